#pragma once

#include "pool/poolfunction.h"

// Organizer function 23: renames the front and back image files of each track's album folder,
// found by a part of their name, after the folder or after tags. A rename never replaces a file.
class Function0023 : public PoolFunction
{
    Q_OBJECT
    Q_PROPERTY(qint64 yourRenameOption MEMBER yourRenameOption NOTIFY optionChanged)
    Q_PROPERTY(qint64 yourTag1 MEMBER yourTag1 NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourTag2 MEMBER yourTag2 NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourTag3 MEMBER yourTag3 NOTIFY settingsChanged)
    Q_PROPERTY(QString yourDel1 MEMBER yourDel1 NOTIFY settingsChanged)
    Q_PROPERTY(QString yourDel2 MEMBER yourDel2 NOTIFY settingsChanged)
    Q_PROPERTY(QString yourPrefix MEMBER yourPrefix NOTIFY settingsChanged)
    Q_PROPERTY(QString yourSuffix MEMBER yourSuffix NOTIFY settingsChanged)
    Q_PROPERTY(bool yourRenameArtworkFront MEMBER yourRenameArtworkFront NOTIFY settingsChanged)
    Q_PROPERTY(bool yourRenameArtworkBack MEMBER yourRenameArtworkBack NOTIFY settingsChanged)
    Q_PROPERTY(QString yourIdentifierArtworkFront MEMBER yourIdentifierArtworkFront NOTIFY settingsChanged)
    Q_PROPERTY(QString yourIdentifierArtworkBack MEMBER yourIdentifierArtworkBack NOTIFY settingsChanged)
    Q_PROPERTY(bool enableTags READ enableTags NOTIFY optionChanged)

public:
    static constexpr qint64 kAfterFolder = 1, kAfterTags = 2; // yourRenameOption

    using PoolFunction::PoolFunction;

    bool enableTags() const { return yourRenameOption != kAfterFolder; }

    PoolFunctionAnswer doMyFunctionCheck() override;
    void doMyFunctionMain(const ITunesTrack &track) override;
    PanelDescription panelDescription() const override;

    // The new name without suffix and extension: the album folder's name, or the prefix, the
    // tags with their separators and the suffix.
    QString newName(const ITunesTrack &track, const QString &albumFolder) const;
    // Renames the first image file of the folder whose name holds the identifier to the new
    // name with its own extension. False when there is none or the new name is taken.
    bool runRenameArtwork(const QString &newName, const QString &albumFolderLocation,
                          const QString &artworkIdentifier);

signals:
    void optionChanged();
    void settingsChanged();

private:
    qint64 yourRenameOption = kAfterFolder;
    qint64 yourTag1 = 4, yourTag2 = 3, yourTag3 = 0;
    QString yourDel1 = QStringLiteral(" - "), yourDel2 = QStringLiteral(" - ");
    QString yourPrefix, yourSuffix;
    bool yourRenameArtworkFront = true, yourRenameArtworkBack = true;
    QString yourIdentifierArtworkFront = QStringLiteral("front");
    QString yourIdentifierArtworkBack = QStringLiteral("back");
};
