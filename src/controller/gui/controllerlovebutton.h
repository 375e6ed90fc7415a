#pragma once

#include <QAbstractButton>

// The love button of the status strip: a heart, full when the playing track is loved. Reports
// a click with the modifiers held at the release (Alt loves the album). Main thread.
class ControllerLoveButton : public QAbstractButton
{
    Q_OBJECT

public:
    explicit ControllerLoveButton(const QRect &frame, QWidget *parent = nullptr);

    bool isLovedImage() const { return loved_; }
    void setLovedImage(bool loved);

signals:
    void clickedWithModifiers(Qt::KeyboardModifiers modifiers);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    bool loved_ = false;
    Qt::KeyboardModifiers releaseModifiers_;
};
