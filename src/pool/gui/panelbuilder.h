#pragma once

#include "pool/paneldescription.h"

#include <QMetaProperty>
#include <QObject>
#include <QVariant>

#include <functional>

class QWidget;

// Keeps one property of a target object and a widget in step: the widget shows the value now
// and whenever the property's NOTIFY signal fires, and write() sets the property by name.
// Owned by the widget it serves; main thread.
class PropertyLink : public QObject
{
    Q_OBJECT

public:
    using Show = std::function<void(const QVariant &value)>;

    // Null when the target has no property of that name.
    static PropertyLink *create(QObject *target, const QString &property, QWidget *owner, Show show);

    void write(const QVariant &value);
    QVariant value() const { return property_.read(target_); }

public slots:
    void refresh();

private:
    PropertyLink(QObject *target, const QMetaProperty &property, QWidget *owner, Show show);

    QObject *target_;
    QMetaProperty property_;
    Show show_;
    bool showing_ = false;
};

// Builds a panel from its description, every field bound by name to the target's Q_PROPERTYs
// in both directions and enabled by its enabledBy property. The one builder of the organizer:
// function panels and the preferences sheet alike. Labels go through ov_localizedString.
namespace PanelBuilder {

QWidget *build(const PanelDescription &description, QObject *target, QWidget *parent = nullptr);

// The name of a tag number in the tag pop-ups (1 to 29).
QString tagName(qint64 number);

} // namespace PanelBuilder
