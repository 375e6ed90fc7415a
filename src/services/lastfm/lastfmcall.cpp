#include "services/lastfm/lastfmcall.h"

#include "additions/textadditions.h"

#include <QUrl>

#include <libxml/parser.h>
#include <libxml/xpath.h>

namespace {

struct ContextFree { void operator()(xmlXPathContext *c) const { xmlXPathFreeContext(c); } };
struct ObjectFree { void operator()(xmlXPathObject *o) const { xmlXPathFreeObject(o); } };

QString fromXml(const xmlChar *text)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(text));
}

// All text below the node, as the node's string value.
QString stringValue(xmlNode *node)
{
    xmlChar *content = xmlNodeGetContent(node);
    const QString value = fromXml(content);
    xmlFree(content);
    return value;
}

std::optional<QString> attribute(xmlNode *node, const char *name)
{
    for (xmlAttr *attribute = node->properties; attribute; attribute = attribute->next) {
        if (xmlStrcmp(attribute->name, reinterpret_cast<const xmlChar *>(name)) != 0)
            continue;
        xmlChar *value = xmlNodeListGetString(node->doc, attribute->children, 1);
        const QString text = fromXml(value);
        xmlFree(value);
        return text;
    }
    return std::nullopt;
}

xmlNode *firstNode(xmlDoc *document, const QString &path)
{
    xmlNode *root = xmlDocGetRootElement(document);
    std::unique_ptr<xmlXPathContext, ContextFree> context(xmlXPathNewContext(document));
    if (!root || !context)
        return nullptr;
    std::unique_ptr<xmlXPathObject, ObjectFree> result(
        xmlXPathNodeEval(root, reinterpret_cast<const xmlChar *>(path.toUtf8().constData()), context.get()));
    if (!result || !result->nodesetval || result->nodesetval->nodeNr == 0)
        return nullptr;
    return result->nodesetval->nodeTab[0];
}

// The number a text starts with, after leading spaces; 0 when it starts with none.
qint64 leadingInteger(const QString &text)
{
    const QString trimmed = text.trimmed();
    qsizetype end = 0;
    if (end < trimmed.size() && (trimmed[end] == u'-' || trimmed[end] == u'+'))
        ++end;
    while (end < trimmed.size() && trimmed[end].isDigit())
        ++end;
    return trimmed.left(end).toLongLong();
}

} // namespace

namespace LastFMCall {

QString signature(const LastFMParameters &parameters, const QString &secret)
{
    QString signed_;
    for (auto it = parameters.cbegin(); it != parameters.cend(); ++it)
        signed_ += it.key() + it.value();
    return md5(signed_ + secret);
}

QByteArray body(const LastFMParameters &parameters)
{
    QByteArray form;
    for (auto it = parameters.cbegin(); it != parameters.cend(); ++it)
        form += '&' + it.key().toUtf8() + '=' + QUrl::toPercentEncoding(it.value());
    return form.mid(1);
}

} // namespace LastFMCall

std::optional<LastFMReply> LastFMReply::parse(const QByteArray &bytes)
{
    if (bytes.isEmpty())
        return std::nullopt;
    std::shared_ptr<xmlDoc> document(
        xmlReadMemory(bytes.constData(), int(bytes.size()), nullptr, "UTF-8",
                      XML_PARSE_RECOVER | XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
        xmlFreeDoc);
    xmlNode *root = document ? xmlDocGetRootElement(document.get()) : nullptr;
    if (!root)
        return std::nullopt;

    LastFMReply reply;
    reply.document_ = document;
    reply.ok_ = attribute(root, "status") == QStringLiteral("ok");
    if (!reply.ok_) {
        if (xmlNode *error = firstNode(document.get(), QStringLiteral("error"))) {
            if (const std::optional<QString> code = attribute(error, "code")) {
                reply.errorCode_ = leadingInteger(*code);
                reply.errorText_ = stringValue(error);
            }
        }
    }
    return reply;
}

std::optional<QString> LastFMReply::text(const QString &path) const
{
    xmlNode *node = document_ ? firstNode(document_.get(), path) : nullptr;
    return node ? std::optional<QString>(stringValue(node)) : std::nullopt;
}
