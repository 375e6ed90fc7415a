#include "additions/propertylist.h"
#include "application/preferenceobject.h"
#include "plistfixtures.h"

#include <QFile>

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

TEST(PreferenceObject, AMissingOrMistypedKeyTakesItsDefaultAndTheNextSaveWritesIt)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("Sample.plist");
    for (const QVariantMap &file : {QVariantMap{{"Flag", true}}, QVariantMap{{"Flag", true}, {"Count", "many"}}}) {
        ASSERT_TRUE(PropertyList::write(path, file));
        SamplePreferences preferences(path);
        EXPECT_TRUE(preferences.prefFlag());
        EXPECT_FALSE(preferences.isSettingNull("prefCount"));
        EXPECT_EQ(preferences.prefCount(), 5);

        preferences.saveUserPreferences();
        EXPECT_EQ(PropertyList::readMap(path), (QVariantMap{{"Flag", true}, {"Count", 5}}));
    }
}

TEST(PreferenceObject, AHostileFileNestedDeepInEitherFormGivesTheDefaults)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("Sample.plist");
    for (const QByteArray &hostile : {nestedXmlArrays(200000), nestedBinaryArrays(200000)}) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(hostile) == hostile.size());
        file.close();
        SamplePreferences preferences(path);
        EXPECT_FALSE(preferences.prefFlag());
        EXPECT_EQ(preferences.prefCount(), 5);
        EXPECT_EQ(PropertyList::readMap(path), (QVariantMap{{"Flag", false}, {"Count", 5}}));
    }
}

#include "preferenceobject_test.moc"
