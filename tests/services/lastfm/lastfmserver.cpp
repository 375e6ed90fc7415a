#include "lastfmserver.h"

#include <QCryptographicHash>
#include <QUrl>

namespace {

QString formDecode(QByteArray text)
{
    return QString::fromUtf8(QByteArray::fromPercentEncoding(text.replace('+', ' ')));
}

} // namespace

LastFmServer::LastFmServer()
{
    http.handle(QStringLiteral("/2.0/"), [this](const RecordedRequest &request) { return answer(request); });
    qputenv("ORVANE_LASTFM_BASE_URL", http.baseUrl().toUtf8());
    qputenv("ORVANE_LASTFM_AUTH_URL", (http.baseUrl() + "/api/auth/").toUtf8());
    qputenv("ORVANE_LASTFM_API_KEY", kApiKey);
    qputenv("ORVANE_LASTFM_API_SECRET", kSecret);
}

ScriptedResponse LastFmServer::failed(int code, const QByteArray &text)
{
    return xml("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<lfm status=\"failed\"><error code=\""
               + QByteArray::number(code) + "\">" + text + "</error></lfm>");
}

ScriptedResponse LastFmServer::session(const QByteArray &key)
{
    return xml("<lfm status=\"ok\"><session><name>listener</name><key>" + key + "</key></session></lfm>");
}

void LastFmServer::respond(const QString &method, const ScriptedResponse &response)
{
    QMutexLocker lock(&mutex_);
    scripted_.insert(method, response);
}

ScriptedResponse LastFmServer::answer(const RecordedRequest &request)
{
    Call call;
    call.request = request;
    for (const QByteArray &pair : request.body.split('&')) {
        const qsizetype equals = pair.indexOf('=');
        call.parameters.insert(formDecode(pair.left(equals)), formDecode(pair.mid(equals + 1)));
    }
    call.method = call.parameters.value("method");
    QByteArray signedText;
    for (auto it = call.parameters.cbegin(); it != call.parameters.cend(); ++it)
        if (it.key() != "api_sig")
            signedText += it.key().toUtf8() + it.value().toUtf8();
    signedText += kSecret;
    call.signatureOk = QCryptographicHash::hash(signedText, QCryptographicHash::Md5).toHex()
                       == call.parameters.value("api_sig").toLatin1();

    QMutexLocker lock(&mutex_);
    calls_.append(call);
    if (!call.signatureOk || call.parameters.value("api_key") != kApiKey)
        return failed(13, "Invalid method signature supplied");
    if (scripted_.contains(call.method))
        return scripted_.value(call.method);
    if (call.method == "auth.getToken")
        return xml(QByteArray("<lfm status=\"ok\"><token>") + kToken + "</token></lfm>");
    if (call.method == "auth.getSession")
        return session(kSessionKey);
    return xml("<lfm status=\"ok\"></lfm>");
}

QList<LastFmServer::Call> LastFmServer::calls() const
{
    QMutexLocker lock(&mutex_);
    return calls_;
}

QList<LastFmServer::Call> LastFmServer::calls(const QString &method) const
{
    QList<Call> found;
    for (const Call &call : calls())
        if (call.method == method)
            found << call;
    return found;
}

QStringList LastFmServer::methods() const
{
    QStringList names;
    for (const Call &call : calls())
        names << call.method;
    return names;
}
