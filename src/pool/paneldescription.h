#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantList>

// What a function's panel in the organizer window shows, as data: one generic builder turns it
// into widgets bound to the function's Q_PROPERTYs by name. Texts are strings-table keys or
// plain English (ov_localizedString falls back to the key itself).
struct PanelField
{
    enum class Kind {
        Label,          // text only (label)
        Text,           // one line of text bound to a QString property
        MultilineText,  // several lines, QString property
        Number,         // integer spin box; minimum/maximum
        Check,          // check box bound to a bool property
        Choice,         // pop-up of choices: choiceLabels, property holds choiceValues[i]
                        // (or the index when choiceValues is empty)
        Tag,            // pop-up of the tag table (numbers 1 to 29, or choiceValues if given)
        Folder,         // a path with a "Choose..." button, QString property
        Button,         // calls the Q_INVOKABLE named by action on the function
        Separator,
    };

    Kind kind = Kind::Label;
    QString property;          // the bound property
    QString label;
    QStringList choiceLabels;
    QVariantList choiceValues;
    qint64 minimum = 0;
    qint64 maximum = 9999;
    QString enabledBy;         // a bool property (often a derived enable... one) that enables it
    QString action;            // Button: the invokable to call
    QString group;             // fields with the same group share a titled box, in order
};

struct PanelDescription
{
    QString title;             // the function's name in the navigator
    QString summary;           // one or two sentences on what a run does
    QList<PanelField> fields;
};
