#include "pool/functionpoolpreferences.h"

#include "additions/ovapplication.h"
#include "pool/functionpoolcontroller.h"

#include <QDir>
#include <QFileInfo>

namespace {

const QString kSuffixSeparator = QStringLiteral(", ");

QList<PreferenceObject::Setting> poolSettings()
{
    const QStringList audio{"mp3", "wav", "aiff", "aac", "aifc", "m4p", "m4a", "aa", "aax"};
    const QStringList image{"jpg", "jpeg", "gif", "bmp", "png", "tiff", "tif"};
    return {
        {"prefConfirmFunction", "ConfirmationPromptFunction", true},
        {"prefLogChangedTracks", "LogTracksChanged", true},
        {"prefLogUnchangedTracks", "LogTracksUnchanged", true},
        {"prefLogDisplayOnFunctionEnd", "LogShowAfterEachFunction", false},
        {"prefArtworkFrontPosition", "ArtworkFrontPosition", 1},
        {"prefArtworkBackPosition", "ArtworkBackPosition", 2},
        {"prefArtworkFrontSuffix", "ArtworkFrontSuffix", QStringLiteral("_Cover A")},
        {"prefArtworkBackSuffix", "ArtworkBackSuffix", QStringLiteral("_Cover B")},
        {"prefAlbumDiscFolderName", "AlbumDiscFolderName", QStringLiteral("CD")},
        {"prefFileAudioSuffixs", "FileExtensionsAudio", audio.join(kSuffixSeparator)},
        {"prefFileImageSuffixs", "FileExtensionsArtwork", image.join(kSuffixSeparator)},
    };
}

} // namespace

FunctionPoolPreferences::FunctionPoolPreferences(FunctionPoolController *pool, QObject *parent)
    : PreferenceObject(poolSettings(), parent),
      myFunctionPool_(pool),
      prefAppSupportLocation_(OVApplication::ov_applicationOrganizerURL()),
      prefSearchSetsPlistLocation_(OVApplication::ov_applicationOrganizerURLForPlistSearchAndReplaceSets()),
      prefLyricsSourcesPlistLocation_(OVApplication::ov_applicationOrganizerURLForPlistLyricsSources()),
      prefScriptsPlistLocation_(OVApplication::ov_applicationOrganizerURLForPlistScripts()),
      prefUserPrefPlistLocation_(OVApplication::ov_applicationOrganizerURLForPlistPreferences())
{
    loadUserPreferencesDefaults();
    rebuildSuffixLists();
}

QString FunctionPoolPreferences::prefAppSupportLocationTmp() const
{
    return QStringLiteral("%1/%2").arg(prefAppSupportLocation_, prefAppTmpIdentifer());
}

QString FunctionPoolPreferences::prefFunctionCheckLocation() const
{
    return QStringLiteral("%1/_FunctionCheck.xml").arg(prefAppSupportLocationTmp());
}

QString FunctionPoolPreferences::prefWordChars()
{
    return QStringLiteral("abcdefghijklmnopqrstuvwxyzäöüßàáâãåāąăæçćčĉċďđèéêëēęěĕėĝğġģĥħìíîïīĩĭįĳĵķłľĺļŀ"
                          "ñńňņŋòóôõøōőŏœŕřŗśšşŝșţŧțùúûūůűŭũųŵýÿŷźžż");
}

void FunctionPoolPreferences::readUserPreferences()
{
    PreferenceObject::readUserPreferences();
    rebuildSuffixLists();
}

void FunctionPoolPreferences::openFunctionPool()
{
    if (!prefAppSupportLocation_.isEmpty()) {
        QDir().mkpath(prefAppSupportLocation_);
        QDir temporary(prefAppSupportLocationTmp());
        if (temporary.exists())
            temporary.removeRecursively();
        QDir().mkpath(temporary.path());
    }
    if (QFileInfo::exists(prefUserPrefPlistLocation_))
        readUserPreferences();
}

void FunctionPoolPreferences::closeFunctionPool()
{
    saveUserPreferences();
    if (!prefAppSupportLocation_.isEmpty())
        QDir(prefAppSupportLocationTmp()).removeRecursively();
}

PoolPreferencesAlert FunctionPoolPreferences::validatePreferences()
{
    if (prefArtworkFrontPosition() <= 0 || prefArtworkBackPosition() <= 0)
        return PoolPreferencesAlert::ContradictorySettings;
    if (prefArtworkFrontPosition() == prefArtworkBackPosition() || prefArtworkFrontSuffix().isEmpty()
        || prefArtworkBackSuffix().isEmpty()
        || prefArtworkFrontSuffix().compare(prefArtworkBackSuffix(), Qt::CaseInsensitive) == 0
        || prefAlbumDiscFolderName().isEmpty() || prefFileAudioSuffixs().isEmpty())
        return PoolPreferencesAlert::InvalidSettings;
    prefFileAudioSuffixList_ = prefFileAudioSuffixs().split(kSuffixSeparator);
    if (prefFileImageSuffixs().isEmpty())
        return PoolPreferencesAlert::InvalidSettings;
    prefFileImageSuffixList_ = prefFileImageSuffixs().split(kSuffixSeparator);
    return PoolPreferencesAlert::None;
}

PoolPreferencesAlert FunctionPoolPreferences::closePreferencesPanel()
{
    const PoolPreferencesAlert result = validatePreferences();
    if (result == PoolPreferencesAlert::None)
        saveUserPreferences();
    return result;
}

PoolAlert FunctionPoolPreferences::preferencesAlert(PoolPreferencesAlert value)
{
    switch (value) {
    case PoolPreferencesAlert::ConfirmReset: return FunctionPoolController::alertForCode(PoolAlertCode::ConfirmReset);
    case PoolPreferencesAlert::ContradictorySettings:
        return FunctionPoolController::alertForCode(PoolAlertCode::ContradictorySettings);
    case PoolPreferencesAlert::InvalidSettings:
        return FunctionPoolController::alertForCode(PoolAlertCode::InvalidSettings);
    case PoolPreferencesAlert::None: break;
    }
    return FunctionPoolController::alertForCode(PoolAlertCode::Failure);
}

void FunctionPoolPreferences::tryResetPreferences(PoolFrontEnd *frontEnd)
{
    if (!frontEnd)
        return;
    frontEnd->presentAlert(preferencesAlert(PoolPreferencesAlert::ConfirmReset), [this](int returnCode, bool) {
        if (returnCode != kAlertFirstButtonReturn)
            return;
        resetUserPreferences();
        rebuildSuffixLists();
    });
}

void FunctionPoolPreferences::rebuildSuffixLists()
{
    prefFileAudioSuffixList_ = prefFileAudioSuffixs().split(kSuffixSeparator);
    prefFileImageSuffixList_ = prefFileImageSuffixs().split(kSuffixSeparator);
}
