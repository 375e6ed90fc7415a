#pragma once

#include "localhttpserver.h"

#include <QMap>
#include <QMutex>

// A local stand-in for the Last.fm web service on 127.0.0.1: it decodes each form call as a
// web server would ("+" is a space), checks its signature with the test secret, records it and
// answers in the service's XML form. A call with a wrong signature gets the service's error 13.
// Answers per method can be scripted; the others are plain OK replies.
class LastFmServer
{
public:
    static constexpr char kApiKey[] = "0123456789abcdef0123456789abcdef";
    static constexpr char kSecret[] = "fedcba9876543210fedcba9876543210";
    static constexpr char kToken[] = "tttttttttttttttttttttttttttttttt";
    static constexpr char kSessionKey[] = "ssssssssssssssssssssssssssssssss";

    struct Call
    {
        QString method;
        QMap<QString, QString> parameters; // decoded, api_sig included
        bool signatureOk = false;
        RecordedRequest request;
    };

    // Points the program's Last.fm configuration at this server.
    LastFmServer();

    // The answer to every later call of the method.
    void respond(const QString &method, const ScriptedResponse &response);
    static ScriptedResponse xml(const QByteArray &document) { return ScriptedResponse::text(document, "text/xml"); }
    static ScriptedResponse failed(int code, const QByteArray &text);
    static ScriptedResponse session(const QByteArray &key);

    QList<Call> calls() const;
    QList<Call> calls(const QString &method) const;
    QStringList methods() const;

    LocalHttpServer http;

private:
    ScriptedResponse answer(const RecordedRequest &request);

    mutable QMutex mutex_;
    QMap<QString, ScriptedResponse> scripted_;
    QList<Call> calls_;
};
