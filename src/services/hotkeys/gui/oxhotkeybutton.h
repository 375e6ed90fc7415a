#pragma once

#include <QPushButton>
#include <QValidator>

#include <memory>

class HotkeyListenerPreferences;
class KeyboardLayout;

// The control that records a hotkey in the preferences window. A click starts recording (only
// one button of a pane records at a time); the next key with any modifiers, or none, becomes
// the hotkey if the layout has a name for it. A set, enabled button shows a delete icon at its
// right end that clears it. The tag names the hotkey (HotkeyTag). Main thread.
class OXHotkeyButton : public QPushButton
{
    Q_OBJECT

public:
    explicit OXHotkeyButton(int tag = 0, std::shared_ptr<const KeyboardLayout> layout = nullptr,
                            QWidget *parent = nullptr);

    int tag() const { return tag_; }
    qint64 currentKeyCode() const { return currentKeyCode_; }
    qint64 currentModifierFlags() const { return currentModifierFlags_; }
    void setCurrentKeyCode(qint64 keyCode);
    // Negative stores -1; anything else keeps only the four modifier bits.
    void setCurrentModifierFlags(qint64 flags);
    bool isHotkeySet() const { return currentKeyCode_ >= 0 && currentModifierFlags_ >= 0; }
    bool isRecording() const { return recording_; }
    void reset();

    // The combination as text; a null text when the key has no name.
    QString hotkeyReadableName() const;
    // The delete icon, which is also where a click clears the hotkey.
    QRect deleteIconRect() const;

    QSize sizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void setRecording(bool recording);
    void recordKey(const QKeyEvent &event);
    void updateTitle();

    int tag_;
    std::shared_ptr<const KeyboardLayout> layout_;
    qint64 currentKeyCode_ = -1;
    qint64 currentModifierFlags_ = -1;
    bool recording_ = false;
};

// The hotkey buttons of a pane and the stored hotkeys: the buttons show what is stored (a
// button whose item is missing is reset), and the stored map is rebuilt from every button
// whose tag names a hotkey, set or not.
void setHotkeyParameterForSubViews(const HotkeyListenerPreferences &preferences, const QWidget *pane);
void setNewHotkeysFromSubViews(HotkeyListenerPreferences &preferences, const QWidget *pane);

// The formatter of the key field: one character at most, passed on as typed.
class OXHotkeyFormatter : public QValidator
{
public:
    using QValidator::QValidator;
    State validate(QString &input, int &position) const override;
    static QString stringForObjectValue(const QVariant &object) { return object.toString(); }
    static QString objectValueForString(const QString &string) { return string; }
};
