#include "pool/gui/poolpreferencessheet.h"

#include "additions/localizedstrings.h"
#include "pool/functionpoolpreferences.h"
#include "pool/gui/panelbuilder.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QVBoxLayout>

PoolPreferencesSheet::PoolPreferencesSheet(FunctionPoolPreferences *preferences, PoolFrontEnd *frontEnd,
                                           QWidget *parent)
    : QDialog(parent), preferences_(preferences), frontEnd_(frontEnd)
{
    setWindowModality(Qt::WindowModal);
    setWindowTitle(ov_localizedString(QStringLiteral("0008.0001")));
    auto *buttons = new QDialogButtonBox(this);
    QPushButton *reset = buttons->addButton(ov_localizedString(QStringLiteral("0008.0040")),
                                            QDialogButtonBox::ResetRole);
    QPushButton *done = buttons->addButton(ov_localizedString(QStringLiteral("0008.0041")),
                                           QDialogButtonBox::AcceptRole);
    done->setDefault(true);
    connect(reset, &QPushButton::clicked, this, &PoolPreferencesSheet::tryResetPreferences);
    connect(done, &QPushButton::clicked, this, &PoolPreferencesSheet::closePreferencesPanel);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(PanelBuilder::build(description(), preferences_, this));
    layout->addWidget(buttons);
    setMinimumWidth(520);
}

PanelDescription PoolPreferencesSheet::description()
{
    using Kind = PanelField::Kind;
    const QString runs = QStringLiteral("0008.0030");
    const QString log = QStringLiteral("0008.0031");
    const QString artwork = QStringLiteral("0008.0032");
    const QString files = QStringLiteral("0008.0033");
    PanelDescription panel;
    panel.fields = {
        {.kind = Kind::Check, .property = QStringLiteral("prefConfirmFunction"),
         .label = QStringLiteral("0008.0050"), .group = runs},
        {.kind = Kind::Check, .property = QStringLiteral("prefLogChangedTracks"),
         .label = QStringLiteral("0008.0051"), .group = log},
        {.kind = Kind::Check, .property = QStringLiteral("prefLogUnchangedTracks"),
         .label = QStringLiteral("0008.0052"), .group = log},
        {.kind = Kind::Check, .property = QStringLiteral("prefLogDisplayOnFunctionEnd"),
         .label = QStringLiteral("0008.0053"), .group = log},
        {.kind = Kind::Number, .property = QStringLiteral("prefArtworkFrontPosition"),
         .label = QStringLiteral("0008.0054"), .minimum = 0, .maximum = 99, .group = artwork},
        {.kind = Kind::Text, .property = QStringLiteral("prefArtworkFrontSuffix"),
         .label = QStringLiteral("0008.0055"), .group = artwork},
        {.kind = Kind::Number, .property = QStringLiteral("prefArtworkBackPosition"),
         .label = QStringLiteral("0008.0056"), .minimum = 0, .maximum = 99, .group = artwork},
        {.kind = Kind::Text, .property = QStringLiteral("prefArtworkBackSuffix"),
         .label = QStringLiteral("0008.0057"), .group = artwork},
        {.kind = Kind::Text, .property = QStringLiteral("prefAlbumDiscFolderName"),
         .label = QStringLiteral("0008.0058"), .group = files},
        {.kind = Kind::Text, .property = QStringLiteral("prefFileAudioSuffixs"),
         .label = QStringLiteral("0008.0059"), .group = files},
        {.kind = Kind::Text, .property = QStringLiteral("prefFileImageSuffixs"),
         .label = QStringLiteral("0008.0060"), .group = files},
    };
    return panel;
}

void PoolPreferencesSheet::closePreferencesPanel()
{
    const PoolPreferencesAlert failure = preferences_->closePreferencesPanel();
    if (failure == PoolPreferencesAlert::None) {
        done(QDialog::Accepted);
        return;
    }
    frontEnd_->presentAlert(FunctionPoolPreferences::preferencesAlert(failure), {});
}

void PoolPreferencesSheet::tryResetPreferences()
{
    preferences_->tryResetPreferences(frontEnd_);
}
