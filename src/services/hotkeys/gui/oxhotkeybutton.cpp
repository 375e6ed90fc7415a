#include "services/hotkeys/gui/oxhotkeybutton.h"

#include "additions/localizedstrings.h"
#include "services/hotkeys/hotkeylistenerpreferences.h"
#include "services/hotkeys/keyboardlayout.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionButton>
#include <QStylePainter>

namespace {

quint64 hotkeyFlags(Qt::KeyboardModifiers modifiers)
{
    quint64 flags = 0;
    if (modifiers & Qt::ShiftModifier)
        flags |= kHotkeyShift;
    if (modifiers & Qt::ControlModifier)
        flags |= kHotkeyControl;
    if (modifiers & Qt::AltModifier)
        flags |= kHotkeyOption;
    if (modifiers & Qt::MetaModifier)
        flags |= kHotkeyCommand;
    return flags;
}

// A modifier pressed alone is the start of a combination, not a key of its own.
bool isModifierKey(int key)
{
    switch (key) {
    case Qt::Key_Shift: case Qt::Key_Control: case Qt::Key_Alt: case Qt::Key_Meta:
    case Qt::Key_AltGr: case Qt::Key_Super_L: case Qt::Key_Super_R: case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R: case Qt::Key_CapsLock: case Qt::Key_NumLock: case Qt::Key_ScrollLock:
        return true;
    default:
        return false;
    }
}

} // namespace

OXHotkeyButton::OXHotkeyButton(int tag, std::shared_ptr<const KeyboardLayout> layout, QWidget *parent)
    : QPushButton(parent), tag_(tag), layout_(layout ? std::move(layout) : KeyboardLayout::current())
{
    setFocusPolicy(Qt::StrongFocus);
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * 0.85);
    setFont(small);
    updateTitle();
}

void OXHotkeyButton::setCurrentKeyCode(qint64 keyCode)
{
    currentKeyCode_ = keyCode < 0 ? -1 : keyCode;
    updateTitle();
}

void OXHotkeyButton::setCurrentModifierFlags(qint64 flags)
{
    currentModifierFlags_ = flags < 0 ? -1 : qint64((quint64(flags) & kHotkeyModifierMask));
    updateTitle();
}

void OXHotkeyButton::reset()
{
    currentKeyCode_ = -1;
    currentModifierFlags_ = -1;
    updateTitle();
}

QString OXHotkeyButton::hotkeyReadableName() const
{
    return ::hotkeyReadableName(currentKeyCode_, currentModifierFlags_, layout_.get());
}

QRect OXHotkeyButton::deleteIconRect() const
{
    return QRect(width() - 15, int((height() - 12) * 0.5 - 0.5), 12, 12);
}

QSize OXHotkeyButton::sizeHint() const
{
    const QSize hint = QPushButton::sizeHint();
    return {std::max(hint.width() + 24, 170), hint.height()};
}

void OXHotkeyButton::setRecording(bool recording)
{
    recording_ = recording;
    if (recording)
        setFocus(Qt::MouseFocusReason);
    updateTitle();
}

void OXHotkeyButton::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QPushButton::mousePressEvent(event);
        return;
    }
    // A click while recording only refreshes; a click on the icon clears without recording.
    if (!recording_) {
        if (isHotkeySet() && isEnabled() && deleteIconRect().contains(event->position().toPoint()))
            reset();
        else
            setRecording(true);
    }
    updateTitle();
    if (parentWidget())
        for (OXHotkeyButton *other : parentWidget()->findChildren<OXHotkeyButton *>(Qt::FindDirectChildrenOnly))
            if (other != this && other->isRecording())
                other->setRecording(false);
    event->accept();
}

void OXHotkeyButton::mouseReleaseEvent(QMouseEvent *event)
{
    event->accept();
}

bool OXHotkeyButton::event(QEvent *event)
{
    // While recording every key is the hotkey's: no shortcut, tab or escape of the window.
    if (recording_ && (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress)) {
        auto *key = static_cast<QKeyEvent *>(event);
        event->accept();
        if (event->type() == QEvent::KeyPress && !isModifierKey(key->key()))
            recordKey(*key);
        return true;
    }
    return QPushButton::event(event);
}

void OXHotkeyButton::recordKey(const QKeyEvent &event)
{
    // The X key code, which the grabs use too.
    currentKeyCode_ = qint64(event.nativeScanCode() & 0xFFFF);
    currentModifierFlags_ = qint64(hotkeyFlags(event.modifiers()));
    recording_ = false;
    if (hotkeyReadableName().isNull())
        reset();
    updateTitle();
}

void OXHotkeyButton::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::EnabledChange) {
        recording_ = false;
        updateTitle();
    }
    QPushButton::changeEvent(event);
}

void OXHotkeyButton::updateTitle()
{
    setText(recording_ ? ov_localizedString(QStringLiteral("0005.0020")) : hotkeyReadableName());
    update();
}

void OXHotkeyButton::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    option.text.clear();
    if (recording_)
        option.state |= QStyle::State_On | QStyle::State_Sunken;
    painter.drawControl(QStyle::CE_PushButtonBevel, option);

    // Dim while recording and when nothing is set.
    const bool dim = recording_ || !isHotkeySet() || !isEnabled();
    painter.setPen(palette().color(dim ? QPalette::Disabled : QPalette::Active, QPalette::ButtonText));
    painter.drawText(rect().adjusted(4, 0, -4, 0), Qt::AlignCenter, text());

    if (!recording_ && isHotkeySet() && isEnabled()) {
        const QRectF icon = QRectF(deleteIconRect()).adjusted(0.5, 0.5, -0.5, -0.5);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().color(QPalette::Mid));
        painter.drawEllipse(icon);
        painter.setPen(QPen(palette().color(QPalette::Base), 1.4, Qt::SolidLine, Qt::RoundCap));
        const QRectF cross = icon.adjusted(3.5, 3.5, -3.5, -3.5);
        painter.drawLine(cross.topLeft(), cross.bottomRight());
        painter.drawLine(cross.topRight(), cross.bottomLeft());
    }
}

void setHotkeyParameterForSubViews(const HotkeyListenerPreferences &preferences, const QWidget *pane)
{
    const QVariantMap items = preferences.hotkeyItems();
    for (OXHotkeyButton *button : pane->findChildren<OXHotkeyButton *>()) {
        const QVariantMap item = items.value(HotkeyListenerPreferences::hotkeyNameForTag(button->tag())).toMap();
        const QVariant keyCode = item.value(QStringLiteral("KeyCode"));
        const QVariant flags = item.value(QStringLiteral("ModifierFlags"));
        if (!keyCode.isValid() || !flags.isValid()) {
            button->reset();
            continue;
        }
        button->setCurrentKeyCode(keyCode.toLongLong());
        button->setCurrentModifierFlags(flags.toLongLong());
    }
}

void setNewHotkeysFromSubViews(HotkeyListenerPreferences &preferences, const QWidget *pane)
{
    QVariantMap items;
    for (const OXHotkeyButton *button : pane->findChildren<OXHotkeyButton *>()) {
        const QString name = HotkeyListenerPreferences::hotkeyNameForTag(button->tag());
        if (!name.isEmpty())
            items.insert(name, HotkeyListenerPreferences::hotkeyItem(button->currentKeyCode(),
                                                                     button->currentModifierFlags()));
    }
    preferences.setHotkeyItems(items);
}

QValidator::State OXHotkeyFormatter::validate(QString &input, int &) const
{
    return input.size() <= 1 ? Acceptable : Invalid;
}
