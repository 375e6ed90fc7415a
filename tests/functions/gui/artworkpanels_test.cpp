#include "functions/builtinfunctions.h"
#include "pool/gui/panelbuilder.h"
#include "pool/poolfunction.h"
#include "pool/poolfunctionregistry.h"

#include <QDir>
#include <QMetaProperty>
#include <QWidget>

#include <gtest/gtest.h>

#include <memory>

namespace {

// Every field of the artwork functions' panels names a setting the function has, and every
// enabling property is a boolean; a field naming a missing one would sit disabled for good.
// With ORVANE_PANEL_SHOTS set, the panels are also saved there as pictures to look at.
TEST(ArtworkPanels, FieldsBindToTheFunctionsSettings)
{
    PoolFunctionRegistry registry;
    registerBuiltInFunctions(registry);
    const QString shots = qEnvironmentVariable("ORVANE_PANEL_SHOTS");
    for (const qint64 number : {13, 16, 19, 20, 22, 23, 24, 25}) {
        SCOPED_TRACE(number);
        const PoolFunctionRegistry::Entry *entry = nullptr;
        const QList<PoolFunctionRegistry::Entry> entries = registry.entries();
        for (const PoolFunctionRegistry::Entry &candidate : entries)
            if (candidate.number == number)
                entry = &candidate;
        ASSERT_TRUE(entry);
        const std::unique_ptr<PoolFunction> function(entry->factory(nullptr));
        const PanelDescription description = function->panelDescription();
        EXPECT_FALSE(description.summary.isEmpty());
        const QMetaObject *meta = function->metaObject();
        for (const PanelField &field : description.fields) {
            if (!field.property.isEmpty()) {
                const int index = meta->indexOfProperty(field.property.toLatin1().constData());
                EXPECT_GE(index, 0) << field.property.toStdString();
                EXPECT_TRUE(index < 0 || meta->property(index).isWritable()) << field.property.toStdString();
            }
            if (!field.enabledBy.isEmpty()) {
                const int index = meta->indexOfProperty(field.enabledBy.toLatin1().constData());
                ASSERT_GE(index, 0) << field.enabledBy.toStdString();
                EXPECT_EQ(meta->property(index).metaType(), QMetaType::fromType<bool>());
                EXPECT_TRUE(meta->property(index).hasNotifySignal()) << field.enabledBy.toStdString();
            }
        }
        const std::unique_ptr<QWidget> panel(PanelBuilder::build(description, function.get()));
        ASSERT_TRUE(panel);
        if (!shots.isEmpty()) {
            panel->resize(panel->sizeHint().expandedTo(QSize(620, 200)));
            panel->grab().save(QDir(shots).filePath(QStringLiteral("panel-%1.png").arg(number)));
        }
    }
}

} // namespace
