#include "additions/exceptionsink.h"
#include "additions/propertylist.h"
#include "application/preferenceobject.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

// The smallest preference object: two settings in a file of the test's choosing.
class SamplePreferences : public PreferenceObject
{
    Q_OBJECT
    Q_PROPERTY(bool prefFlag READ prefFlag WRITE setPrefFlag NOTIFY settingsChanged)

public:
    explicit SamplePreferences(QString location)
        : PreferenceObject({{"prefFlag", "Flag", false}, {"prefCount", "Count", 5}}), location_(std::move(location))
    {
        loadUserPreferencesDefaults();
        readUserPreferences();
    }
    QString preferencesLocation() const override { return location_; }
    bool prefFlag() const { return boolSetting("prefFlag"); }
    void setPrefFlag(bool on) { setSetting(QStringLiteral("prefFlag"), on); }
    qint64 prefCount() const { return integerSetting("prefCount"); }

private:
    QString location_;
};

} // namespace

TEST(PreferenceObject, CopiesSeeEachOthersSavesOnlyAfterReading)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("Sample.plist");
    SamplePreferences first(path), second(path);
    ASSERT_EQ(PropertyList::readMap(path), (QVariantMap{{"Flag", false}, {"Count", 5}}));

    first.setProperty("prefFlag", true); // as a panel binding writes it
    first.saveUserPreferences();
    EXPECT_FALSE(second.prefFlag());
    second.readUserPreferences();
    EXPECT_TRUE(second.prefFlag());
}

TEST(PreferenceObject, MissingKeyFailsTheSaveAndLeavesTheFile)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("Sample.plist");
    ASSERT_TRUE(PropertyList::write(path, QVariantMap{{"Flag", true}}));
    QStringList logged;
    ExceptionSink::setHandler([&](const OVException &e) { logged << e.name(); });

    SamplePreferences preferences(path);
    EXPECT_TRUE(preferences.prefFlag());
    EXPECT_TRUE(preferences.isSettingNull("prefCount"));
    EXPECT_EQ(preferences.prefCount(), 0);

    preferences.saveUserPreferences();
    ExceptionSink::setHandler({});
    EXPECT_EQ(logged, QStringList{"NSInvalidArgumentException"});
    EXPECT_EQ(PropertyList::readMap(path), (QVariantMap{{"Flag", true}}));
}

#include "preferenceobject_test.moc"
