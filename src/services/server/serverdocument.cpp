#include "services/server/serverdocument.h"

#include "additions/localizedstrings.h"
#include "additions/ovapplication.h"
#include "additions/textsearch.h"
#include "additions/textvalues.h"
#include "additions/urlparameters.h"
#include "pool/utilities.h"

#include <libxml/parser.h>
#include <libxml/xpath.h>

#include <memory>
#include <optional>

namespace {

struct DocumentFree { void operator()(xmlDoc *d) const { xmlFreeDoc(d); } };
struct ContextFree { void operator()(xmlXPathContext *c) const { xmlXPathFreeContext(c); } };
struct ObjectFree { void operator()(xmlXPathObject *o) const { xmlXPathFreeObject(o); } };

// A parsed document and element texts addressed relative to its root.
class Document
{
public:
    explicit Document(const QByteArray &bytes)
        : doc_(xmlReadMemory(bytes.constData(), int(bytes.size()), nullptr, "UTF-8",
                             XML_PARSE_RECOVER | XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING))
    {
        root_ = doc_ ? xmlDocGetRootElement(doc_.get()) : nullptr;
        if (root_)
            context_.reset(xmlXPathNewContext(doc_.get()));
    }

    bool isReadable() const { return root_ && context_; }
    xmlNode *root() const { return root_; }

    // The text of the first element at the path; nullopt when there is none.
    std::optional<QString> text(const char *path) const
    {
        std::unique_ptr<xmlXPathObject, ObjectFree> result(
            xmlXPathNodeEval(root_, reinterpret_cast<const xmlChar *>(path), context_.get()));
        if (!result || !result->nodesetval || result->nodesetval->nodeNr == 0)
            return std::nullopt;
        xmlChar *content = xmlNodeGetContent(result->nodesetval->nodeTab[0]);
        const QString value = QString::fromUtf8(reinterpret_cast<const char *>(content));
        xmlFree(content);
        return value;
    }

    ServerAlert alert(const char *section) const
    {
        const QByteArray prefix = QByteArray(section) + '/';
        return {text((prefix + "Title").constData()).value_or(QString()),
                text((prefix + "Message").constData()).value_or(QString()),
                text((prefix + "URL").constData()).value_or(QString()).trimmed()};
    }

private:
    std::unique_ptr<xmlDoc, DocumentFree> doc_;
    std::unique_ptr<xmlXPathContext, ContextFree> context_;
    xmlNode *root_ = nullptr;
};

OrderedParameters commonParameters(const ServerQueryValues &values)
{
    OrderedParameters parameters{{QStringLiteral("v"), values.version},
                                 {QStringLiteral("b"), values.build},
                                 {QStringLiteral("l"), values.language}};
    if (!values.system.isEmpty())
        parameters.append({QStringLiteral("s"), values.system});
    return parameters;
}

} // namespace

ServerQueryValues ServerQueryValues::current()
{
    return {OVApplication::ov_version(), OVApplication::ov_buildVersion(),
            ov_localizedString(QStringLiteral("0000.0000")), operatingSystemVersionString()};
}

QString serverRequestAddress(const QString &baseURL, const ServerQueryValues &values)
{
    OrderedParameters parameters = commonParameters(values);
    parameters.append({QStringLiteral("a"), QStringLiteral("1")});
    parameters.append({QStringLiteral("o"), QStringLiteral("1")});
    return parameterURL(baseURL + QStringLiteral("/3/request.php"), parameters, TextEncoding::ISOLatin1);
}

QString serverLinkAddress(const QString &baseURL, const ServerQueryValues &values, WebsiteOption option)
{
    OrderedParameters parameters;
    if (!values.system.isEmpty())
        parameters.append({QStringLiteral("s"), values.system});
    parameters.append({QStringLiteral("v"), values.version});
    parameters.append({QStringLiteral("b"), values.build});
    parameters.append({QStringLiteral("l"), values.language});
    // A number outside the pages sends no page.
    if (const int number = int(option); number >= 1 && number <= 6) {
        parameters.append({QStringLiteral("a"), QString::number(number)});
        parameters.append({QStringLiteral("o"), QStringLiteral("0")});
    }
    return parameterURL(baseURL + QStringLiteral("/3/link.php"), parameters, TextEncoding::UTF8);
}

QString serverAffiliateAddress(const QString &baseURL, const ServerQueryValues &values, AffiliateOption option)
{
    OrderedParameters parameters = commonParameters(values);
    parameters.append({QStringLiteral("o"), QString::number(int(option))});
    return parameterURL(baseURL + QStringLiteral("/index.php"), parameters, TextEncoding::UTF8);
}

ServerDocumentState serverDocumentState(const QByteArray &document)
{
    const Document parsed(document);
    if (!parsed.isReadable())
        return ServerDocumentState::Unreadable;
    const xmlAttr *first = parsed.root()->properties;
    if (!first)
        return ServerDocumentState::Refused;
    xmlChar *value = xmlNodeListGetString(parsed.root()->doc, first->children, 1);
    const bool ok = value && xmlStrcmp(value, reinterpret_cast<const xmlChar *>("OK")) == 0;
    xmlFree(value);
    return ok ? ServerDocumentState::Accepted : ServerDocumentState::Refused;
}

bool ServerAlert::opensURL() const
{
    return url.startsWith(QLatin1String("http"), Qt::CaseInsensitive);
}

LaunchDecision evaluateLaunch(const QByteArray &document)
{
    const Document parsed(document);
    if (!parsed.isReadable())
        return {ServerLaunch::Unreadable, {}};
    const std::optional<QString> run = parsed.text("Launch/Run");
    if (!run || boolValue(*run))
        return {ServerLaunch::Run, {}};
    return {ServerLaunch::Stop, parsed.alert("Launch")};
}

UpdateDecision evaluateUpdate(const QByteArray &document, const QString &runningVersion)
{
    const Document parsed(document);
    if (!parsed.isReadable())
        return {ServerUpdate::Unreadable, {}};
    const std::optional<QString> announced = parsed.text("Update/Version");
    if (!announced)
        return {ServerUpdate::None, {}};
    if (compareText(runningVersion, announced->trimmed(), SearchOption::Numeric) != ComparisonResult::OrderedAscending)
        return {ServerUpdate::None, {}};
    return {ServerUpdate::Announced, parsed.alert("Update")};
}
