#pragma once

#include <QString>
#include <QtGlobal>

// The player's enumerators are four-character codes compared as 32-bit values.
using FourCharCode = quint32;

constexpr FourCharCode fourCharCode(const char (&code)[5])
{
    return (FourCharCode(quint8(code[0])) << 24) | (FourCharCode(quint8(code[1])) << 16)
           | (FourCharCode(quint8(code[2])) << 8) | FourCharCode(quint8(code[3]));
}

// "kPSP" for the code of kPSP; for logs and the command line.
QString fourCharCodeText(FourCharCode code);
FourCharCode fourCharCodeFromText(const QString &text); // 0 unless exactly four Latin-1 characters

// playerState
constexpr FourCharCode kPSS = fourCharCode("kPSS"); // stopped
constexpr FourCharCode kPSP = fourCharCode("kPSP"); // playing
constexpr FourCharCode kPSp = fourCharCode("kPSp"); // paused
constexpr FourCharCode kPSF = fourCharCode("kPSF"); // fast forwarding
constexpr FourCharCode kPSR = fourCharCode("kPSR"); // rewinding

// ratingKind, albumRatingKind
constexpr FourCharCode kRtU = fourCharCode("kRtU"); // set by the user
constexpr FourCharCode kRtC = fourCharCode("kRtC"); // computed

// videoKind: kNon means no video. mediaKind: kMdP podcast, kMdS song (the usual value).
constexpr FourCharCode kNon = fourCharCode("kNon");
constexpr FourCharCode kMdP = fourCharCode("kMdP");
constexpr FourCharCode kMdS = fourCharCode("kMdS");
constexpr FourCharCode kVdM = fourCharCode("kVdM"); // a movie, one of the video kinds

// songRepeat
constexpr FourCharCode kRpO = fourCharCode("kRpO");
constexpr FourCharCode kRp1 = fourCharCode("kRp1");
constexpr FourCharCode kAll = fourCharCode("kAll");

// specialKind of a playlist
constexpr FourCharCode kSpL = fourCharCode("kSpL"); // the library
constexpr FourCharCode kSpA = fourCharCode("kSpA"); // books
constexpr FourCharCode kSpF = fourCharCode("kSpF"); // folder
constexpr FourCharCode kSpG = fourCharCode("kSpG"); // genius
constexpr FourCharCode kSpI = fourCharCode("kSpI"); // movies
constexpr FourCharCode kSpM = fourCharCode("kSpM"); // purchased music
constexpr FourCharCode kSpP = fourCharCode("kSpP"); // podcasts
constexpr FourCharCode kSpT = fourCharCode("kSpT"); // shows
constexpr FourCharCode kSpU = fourCharCode("kSpU"); // iTunes U
constexpr FourCharCode kSpZ = fourCharCode("kSpZ"); // music

// kind of a source
constexpr FourCharCode kLib = fourCharCode("kLib");
constexpr FourCharCode kPod = fourCharCode("kPod");
constexpr FourCharCode kACD = fourCharCode("kACD");
constexpr FourCharCode kMCD = fourCharCode("kMCD");
constexpr FourCharCode kTun = fourCharCode("kTun");
constexpr FourCharCode kShd = fourCharCode("kShd");
constexpr FourCharCode kUnk = fourCharCode("kUnk");

// kind of an AirPlay device
constexpr FourCharCode kAPC = fourCharCode("kAPC");
constexpr FourCharCode kAPO = fourCharCode("kAPO");
constexpr FourCharCode kAPT = fourCharCode("kAPT");
constexpr FourCharCode kAPX = fourCharCode("kAPX");
constexpr FourCharCode kAPU = fourCharCode("kAPU");
