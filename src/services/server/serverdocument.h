#pragma once

#include "application/services.h"

#include <QByteArray>
#include <QString>

// The program's server: the addresses of its three endpoints and the reading of the small XML
// document it answers with (cached as ".orvane"). Pure functions, no network and no files.

// What every address tells the server about this copy of the program.
struct ServerQueryValues
{
    QString version;  // "v": the short version
    QString build;    // "b": the build version
    QString language; // "l": the language the program speaks
    QString system;   // "s": the system's version, left out when empty

    static ServerQueryValues current();
};

// The request endpoint, /3/request.php, with "a" and "o" both "1", escaped as ISO Latin 1.
QString serverRequestAddress(const QString &baseURL, const ServerQueryValues &values);
// The link endpoint, /3/link.php, in UTF-8; options 1 to 6 add "a" (the option) and "o" ("0").
QString serverLinkAddress(const QString &baseURL, const ServerQueryValues &values, WebsiteOption option);
// The affiliate endpoint, /index.php, in UTF-8, with "o" the option.
QString serverAffiliateAddress(const QString &baseURL, const ServerQueryValues &values, AffiliateOption option);

// A document is accepted when it parses (damaged XML tidied as far as it goes) and the first
// attribute of its root element has the value "OK".
enum class ServerDocumentState { Unreadable, Refused, Accepted };
ServerDocumentState serverDocumentState(const QByteArray &document);

// An alert the document asks for: its texts and the address to open after it.
struct ServerAlert
{
    QString title;
    QString message;
    QString url;
    // True when the address begins with "http" in either case, so it may be opened.
    bool opensURL() const;
};

// Launch/Run: Stop comes with the document's alert. A missing Run lets this version start; an
// empty one reads as false.
struct LaunchDecision
{
    ServerLaunch result = ServerLaunch::Run;
    ServerAlert alert;
};
LaunchDecision evaluateLaunch(const QByteArray &document);

// Update/Version against the running short version, compared by the value of their numbers
// ("3.10" is newer than "3.9"); Announced comes with the document's alert.
struct UpdateDecision
{
    ServerUpdate result = ServerUpdate::None;
    ServerAlert alert;
};
UpdateDecision evaluateUpdate(const QByteArray &document, const QString &runningVersion);
