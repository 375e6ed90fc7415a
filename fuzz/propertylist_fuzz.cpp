// Property lists as the settings files hold them, XML or binary, from any bytes: reading never
// crashes, and whatever was read writes back as XML that reads again.
#include "additions/ovexception.h"
#include "additions/propertylist.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QVariant value =
        PropertyList::fromData(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    if (!value.isValid())
        return 0;
    QByteArray xml;
    try {
        xml = PropertyList::toXml(value);
    } catch (const OVException &) {
        std::abort(); // everything read can be written
    }
    if (!PropertyList::fromData(xml).isValid()) {
        fprintf(stderr, "written but unreadable:\n%s\n", xml.constData());
        std::abort();
    }
    return 0;
}
