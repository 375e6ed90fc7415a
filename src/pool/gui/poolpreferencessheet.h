#pragma once

#include <QDialog>

class FunctionPoolPreferences;
class PoolFrontEnd;
struct PanelDescription;

// The organizer's preferences sheet: the pool settings bound live to the preferences object,
// checked when the sheet is closed (it stays open and says why when a check fails), and a
// reset that asks first. Its alerts go through the front end, which puts them on this sheet
// while it is open. Main thread; owned by the organizer window.
class PoolPreferencesSheet : public QDialog
{
    Q_OBJECT

public:
    PoolPreferencesSheet(FunctionPoolPreferences *preferences, PoolFrontEnd *frontEnd, QWidget *parent);

    // The sheet's fields as a panel description over FunctionPoolPreferences' properties.
    static PanelDescription description();

    // Validates; saves and closes when the settings pass, else shows the failure's alert.
    void closePreferencesPanel();
    void tryResetPreferences();

protected:
    void reject() override { closePreferencesPanel(); }

private:
    FunctionPoolPreferences *preferences_;
    PoolFrontEnd *frontEnd_;
};
