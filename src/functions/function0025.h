#pragma once

#include "pool/poolfunction.h"

// Organizer function 25: embeds image files of the album folder, found by a part of their
// name, as the front and back artworks of each track, scaled down (or up) to a size.
class Function0025 : public PoolFunction
{
    Q_OBJECT
    Q_PROPERTY(bool yourFrontArtworkEmbed MEMBER yourFrontArtworkEmbed NOTIFY frontEmbedChanged)
    Q_PROPERTY(bool yourFrontArtworkReplace MEMBER yourFrontArtworkReplace NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourFrontArtworkSize MEMBER yourFrontArtworkSize NOTIFY settingsChanged)
    Q_PROPERTY(QString yourIdentifierFrontArtwork MEMBER yourIdentifierFrontArtwork NOTIFY settingsChanged)
    Q_PROPERTY(bool yourFrontScaleArtworkUp MEMBER yourFrontScaleArtworkUp NOTIFY settingsChanged)
    Q_PROPERTY(bool yourBackArtworkEmbed MEMBER yourBackArtworkEmbed NOTIFY backEmbedChanged)
    Q_PROPERTY(bool yourBackArtworkReplace MEMBER yourBackArtworkReplace NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourBackArtworkSize MEMBER yourBackArtworkSize NOTIFY settingsChanged)
    Q_PROPERTY(QString yourIdentifierBackArtwork MEMBER yourIdentifierBackArtwork NOTIFY settingsChanged)
    Q_PROPERTY(bool yourBackScaleArtworkUp MEMBER yourBackScaleArtworkUp NOTIFY settingsChanged)
    Q_PROPERTY(bool enableFrontArtworkOptions READ enableFrontArtworkOptions NOTIFY frontEmbedChanged)
    Q_PROPERTY(bool enableBackArtworkOptions READ enableBackArtworkOptions NOTIFY backEmbedChanged)

public:
    using PoolFunction::PoolFunction;

    bool enableFrontArtworkOptions() const { return yourFrontArtworkEmbed; }
    bool enableBackArtworkOptions() const { return yourBackArtworkEmbed; }

    PoolFunctionAnswer doMyFunctionCheck() override;
    void doMyFunctionMain(const ITunesTrack &track) override;
    PanelDescription panelDescription() const override;

    // Embeds the first image file of the folder whose name holds the identifier at the
    // position (from 1), unless the track's countOfArtworks already reach it and replace is
    // off. sizeOption is the side in hundreds of pixels (0 keeps the size). Answers the count
    // it was given: an artwork added here does not count for the next call.
    qint64 runEmbedArtwork(const ITunesTrack &track, bool replace, const QString &identifier, qint64 sizeOption,
                           qint64 countOfArtworks, const QString &albumFolderLocation, qint64 artworkPosition,
                           bool allowUpperScale);

signals:
    void frontEmbedChanged();
    void backEmbedChanged();
    void settingsChanged();

private:
    bool yourFrontArtworkEmbed = true;
    bool yourFrontArtworkReplace = false;
    qint64 yourFrontArtworkSize = 5;
    QString yourIdentifierFrontArtwork = QStringLiteral("_Cover A");
    bool yourFrontScaleArtworkUp = false;
    bool yourBackArtworkEmbed = false;
    bool yourBackArtworkReplace = false;
    qint64 yourBackArtworkSize = 5;
    QString yourIdentifierBackArtwork = QStringLiteral("_Cover B");
    bool yourBackScaleArtworkUp = false;
};
