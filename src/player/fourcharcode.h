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

// kind of a source; the values are the player's four-character codes.
enum class SourceKind : FourCharCode {
    kLib = fourCharCode("kLib"), // the library
    kPod = fourCharCode("kPod"), // an iPod
    kACD = fourCharCode("kACD"), // an audio CD
    kMCD = fourCharCode("kMCD"), // an MP3 CD
    kTun = fourCharCode("kTun"), // a radio tuner
    kShd = fourCharCode("kShd"), // a shared library
    kUnk = fourCharCode("kUnk"), // unknown
};

// kind of an AirPlay device; the values are the player's four-character codes.
enum class AirPlayDeviceKind : FourCharCode {
    kAPC = fourCharCode("kAPC"), // a computer
    kAPO = fourCharCode("kAPO"), // another AirPlay device
    kAPT = fourCharCode("kAPT"), // an Apple TV
    kAPX = fourCharCode("kAPX"), // an AirPort Express
    kAPU = fourCharCode("kAPU"), // unknown
};
