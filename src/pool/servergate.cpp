#include "pool/servergate.h"

#include "additions/textvalues.h"

#include <QFile>

#include <libxml/parser.h>
#include <libxml/xpath.h>

#include <memory>

namespace {

struct DocumentFree { void operator()(xmlDoc *d) const { xmlFreeDoc(d); } };
struct ContextFree { void operator()(xmlXPathContext *c) const { xmlXPathFreeContext(c); } };
struct ObjectFree { void operator()(xmlXPathObject *o) const { xmlXPathFreeObject(o); } };
using XPathResult = std::unique_ptr<xmlXPathObject, ObjectFree>;

QString nodeText(xmlNode *node)
{
    xmlChar *content = xmlNodeGetContent(node);
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(content));
    xmlFree(content);
    return text;
}

XPathResult evaluate(xmlXPathContext *context, xmlNode *node, const char *path)
{
    return XPathResult(xmlXPathNodeEval(node, reinterpret_cast<const xmlChar *>(path), context));
}

int nodeCount(const XPathResult &result)
{
    return result && result->nodesetval ? result->nodesetval->nodeNr : 0;
}

} // namespace

ServerGateDecision evaluateServerGate(const QByteArray &document, qint64 functionNumber)
{
    const ServerGateDecision unreadable{ServerGateDecision::Result::Unreadable, {}};
    std::unique_ptr<xmlDoc, DocumentFree> doc(
        xmlReadMemory(document.constData(), int(document.size()), nullptr, nullptr,
                      XML_PARSE_RECOVER | XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING));
    xmlNode *root = doc ? xmlDocGetRootElement(doc.get()) : nullptr;
    if (!root)
        return unreadable;
    std::unique_ptr<xmlXPathContext, ContextFree> context(xmlXPathNewContext(doc.get()));
    const XPathResult ids = evaluate(context.get(), root, "FunctionPool/Functions/Function/ID");
    if (!ids)
        return unreadable;

    const QString wanted = QString::number(functionNumber);
    for (int i = 0; i < nodeCount(ids); ++i) {
        xmlNode *id = ids->nodesetval->nodeTab[i];
        if (nodeText(id) != wanted)
            continue;
        const XPathResult run = evaluate(context.get(), id->parent, "Run");
        if (!run)
            return unreadable;
        if (nodeCount(run) == 0)
            continue;
        if (boolValue(nodeText(run->nodesetval->nodeTab[0])))
            return {ServerGateDecision::Result::Run, {}};
        const XPathResult message = evaluate(context.get(), id->parent, "Message");
        if (nodeCount(message) > 0)
            return {ServerGateDecision::Result::ShowMessage, nodeText(message->nodesetval->nodeTab[0])};
    }
    return {ServerGateDecision::Result::Run, {}};
}

ServerGateDecision evaluateServerGateFile(const QString &path, qint64 functionNumber)
{
    QFile file(path);
    if (path.isEmpty() || !file.exists())
        return {ServerGateDecision::Result::Run, {}};
    if (!file.open(QIODevice::ReadOnly))
        return {ServerGateDecision::Result::Unreadable, {}};
    return evaluateServerGate(file.readAll(), functionNumber);
}
