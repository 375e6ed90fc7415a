#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <memory>
#include <optional>

// The wire form of the Last.fm web service, with no network in it: how a call is signed and
// written, and what a reply says.

// A call's parameters; the map's order (keys compared as UTF-16 units, case-sensitive) is the
// order the service signs in, so "albumArtist[0]" comes before "album[0]".
using LastFMParameters = QMap<QString, QString>;

namespace LastFMCall {

// The MD5 over every key and its raw value in key order, then the secret.
QString signature(const LastFMParameters &parameters, const QString &secret);
// The form body: "key=value" joined by "&" in key order. Keys go out as they stand (the
// brackets of "track[0]" too); values are escaped fully, so that "&", "=" and "+" inside a
// name survive the service's form decoding.
QByteArray body(const LastFMParameters &parameters);

} // namespace LastFMCall

// What a reply says: its status, the error element and the few values the program reads.
// Parsed leniently (a reply with broken markup is repaired as far as it goes); none only for
// bytes that hold no document at all.
class LastFMReply
{
public:
    static std::optional<LastFMReply> parse(const QByteArray &bytes);

    // The root element's "status" attribute is exactly "ok".
    bool isRequestXmlOk() const { return ok_; }
    // 0 for an OK reply, or when there is no error element or it has no "code".
    qint64 errorCode() const { return errorCode_; }
    // The error element's text, when errorCode() came from it; none otherwise.
    const std::optional<QString> &errorText() const { return errorText_; }
    // The text of the first element at a path below the root ("token", "session/key").
    std::optional<QString> text(const QString &path) const;

private:
    bool ok_ = false;
    qint64 errorCode_ = 0;
    std::optional<QString> errorText_;
    std::shared_ptr<struct _xmlDoc> document_;
};
