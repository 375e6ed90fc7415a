#include "additions/appcontext.h"
#include "playertestsupport.h"

#include "additions/ovapplication.h"
#include "additions/propertylist.h"

#include <QFile>

void MemoryPlayerTest::SetUp()
{
    // The whole executable may run in one process, with one home for all its tests.
    QFile::remove(OVApplication::ov_applicationPreferencesURLForPlistGeneral());
    player->makeDefault();
}

void MemoryPlayerTest::TearDown()
{
    appContext()->setPlayerBackend(nullptr);
}

void MemoryPlayerTest::writeAutoLove(bool use, const QVariant &value)
{
    writeGeneral({{QStringLiteral("UseAutoLove"), use}, {QStringLiteral("UseAutoLoveValue"), value}});
}

void MemoryPlayerTest::writeGeneral(const QVariantMap &general)
{
    ASSERT_TRUE(PropertyList::write(OVApplication::ov_applicationPreferencesURLForPlistGeneral(),
                                    general));
}
