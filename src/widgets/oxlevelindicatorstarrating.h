#pragma once

#include <QWidget>

// The star rating control: five stars showing a value from 0 to 100 in steps of 20. A click (or
// a drag) on a star sets the value and then reports it with the keyboard modifiers held, so the
// owner can tell a track rating from an album rating (Alt). Left of the first star is 0.
// A rating the user gave shows full stars, a computed one hollow stars. Main thread.
class OXLevelIndicatorStarRating : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int value READ value WRITE setValue NOTIFY valueChanged)

public:
    static constexpr int kStarCount = 5;
    static constexpr int kStep = 20;

    explicit OXLevelIndicatorStarRating(QWidget *parent = nullptr);

    int value() const { return value_; }
    // Clamped to 0..100 and rounded to the nearest step.
    void setValue(int value);

    // 1 a rating the user set, 2 a computed one.
    int yourRatingTyp() const { return ratingTyp_; }
    void setYourRatingTyp(int type);
    // 1 gold stars, 2 stars in the colour of the text around them.
    int starColor() const { return starColor_; }
    void changeStarColor(int color);

    // The value a click at x (in the control's coordinates) sets.
    int valueAt(int x) const;

    // Repaints with every drawn controller button, so the strip draws as one.
    void startNotificationObserver();
    void surfaceShouldSyncNoteWithNotification();

    QSize sizeHint() const override { return {65, 14}; }

signals:
    void valueChanged(int value);
    // The user set a value; modifiers as held at the release.
    void activated(Qt::KeyboardModifiers modifiers);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    int value_ = 0;
    int ratingTyp_ = 1;
    int starColor_ = 1;
    bool tracking_ = false;
};
