#pragma once

#include <QTimer>
#include <QWidget>

#include <functional>

// The content of the status strip: the parts the controller lays into it, and hovering, which
// opens the track info window after the time the settings give (at once for 0 or less;
// leaving earlier cancels it). Main thread; made by the controller for every showing.
class OXTuneControllerView : public QWidget
{
    Q_OBJECT

public:
    struct HoverSettings
    {
        bool enabled = true;
        double seconds = 1.0;
    };
    using HoverSettingsSource = std::function<HoverSettings()>;

    explicit OXTuneControllerView(QWidget *parent = nullptr);

    // Where the hover settings come from and what the finished hover calls.
    void setHoverHandlers(HoverSettingsSource settings, std::function<void()> finished);

    void mouseEntered();
    void mouseExited();
    void mouseCheckTimerFinished();
    void mouseCheckTimerCancel();
    bool isHoverTimerRunning() const { return yourMouseHoverCheckTimer_.isActive(); }

protected:
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    // Empty on purpose: a press on the strip's free space does nothing.
    void mousePressEvent(QMouseEvent *) override {}
    void paintEvent(QPaintEvent *event) override;

private:
    QTimer yourMouseHoverCheckTimer_;
    HoverSettingsSource hoverSettings_;
    std::function<void()> hoverFinished_;
};
