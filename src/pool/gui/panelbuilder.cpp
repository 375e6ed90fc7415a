#include "pool/gui/panelbuilder.h"

#include "additions/localizedstrings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLoggingCategory>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>

Q_LOGGING_CATEGORY(lcPanels, "orvane.pool.panels")

// --- PropertyLink

PropertyLink::PropertyLink(QObject *target, const QMetaProperty &property, QWidget *owner, Show show)
    : QObject(owner), target_(target), property_(property), show_(std::move(show))
{
    if (property_.hasNotifySignal()) {
        const int slot = staticMetaObject.indexOfSlot("refresh()");
        QObject::connect(target, property_.notifySignal(), this, staticMetaObject.method(slot));
    }
    // The target may go first (an engine torn down before its window's widgets).
    connect(target, &QObject::destroyed, this, [this] { target_ = nullptr; });
}

PropertyLink *PropertyLink::create(QObject *target, const QString &property, QWidget *owner, Show show)
{
    const int index = target ? target->metaObject()->indexOfProperty(property.toLatin1().constData()) : -1;
    if (index < 0) {
        qCWarning(lcPanels) << "no property" << property << "to bind on"
                            << (target ? target->metaObject()->className() : "nothing");
        return nullptr;
    }
    auto *link = new PropertyLink(target, target->metaObject()->property(index), owner, std::move(show));
    link->refresh();
    return link;
}

void PropertyLink::refresh()
{
    if (!target_ || !show_)
        return;
    showing_ = true;
    show_(property_.read(target_));
    showing_ = false;
}

void PropertyLink::write(const QVariant &value)
{
    // A widget that changes because it is being shown a value must not write it back.
    if (showing_ || !target_)
        return;
    if (!property_.write(target_, value))
        qCWarning(lcPanels) << "cannot write" << value << "to" << property_.name();
}

// --- The builder

namespace {

QString text(const QString &keyOrText)
{
    return keyOrText.isEmpty() ? QString() : ov_localizedString(keyOrText);
}

bool sameValue(const QVariant &shown, const QVariant &choice)
{
    if (shown.metaType() == choice.metaType())
        return shown == choice;
    QVariant converted = choice;
    return converted.convert(shown.metaType()) && converted == shown;
}

constexpr int kCheckColumns = 3;
constexpr int kChecksInColumns = 7;

int clampToInt(qint64 value)
{
    return int(std::clamp<qint64>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

// Lays fields out in order: a titled box per group (made where the group first appears), loose
// fields in plain forms between them, consecutive buttons side by side.
class PanelAssembler
{
public:
    PanelAssembler(QObject *target, QWidget *panel) : target_(target), panel_(panel)
    {
        column_ = new QVBoxLayout(panel);
        column_->setContentsMargins(0, 0, 0, 0);
    }

    void add(const PanelField &field);
    // Many check boxes in a row of fields of one group share a grid of columns.
    void addChecks(const QList<PanelField> &checks);
    void finish() { column_->addStretch(1); }

private:
    QFormLayout *formFor(const PanelField &field);
    QWidget *makeField(const PanelField &field, QFormLayout *form);
    QWidget *textField(const PanelField &field);
    QWidget *multilineField(const PanelField &field);
    QWidget *numberField(const PanelField &field);
    QWidget *checkField(const PanelField &field);
    QWidget *choiceField(const PanelField &field, QStringList labels, QVariantList values);
    QWidget *folderField(const PanelField &field);
    QWidget *buttonField(const PanelField &field, QFormLayout *form);
    void bindEnabled(const PanelField &field, QWidget *widget, QFormLayout *form);

    QObject *target_;
    QWidget *panel_;
    QVBoxLayout *column_;
    QMap<QString, QFormLayout *> groups_;
    QFormLayout *looseForm_ = nullptr;
    QHBoxLayout *buttonRow_ = nullptr;
    QFormLayout *buttonRowForm_ = nullptr;
};

QFormLayout *PanelAssembler::formFor(const PanelField &field)
{
    if (field.group.isEmpty()) {
        if (!looseForm_) {
            auto *box = new QWidget(panel_);
            looseForm_ = new QFormLayout(box);
            looseForm_->setContentsMargins(0, 0, 0, 0);
            looseForm_->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
            column_->addWidget(box);
        }
        return looseForm_;
    }
    looseForm_ = nullptr; // loose fields after a box start a form of their own
    if (QFormLayout *form = groups_.value(field.group))
        return form;
    auto *box = new QGroupBox(text(field.group), panel_);
    auto *form = new QFormLayout(box);
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    column_->addWidget(box);
    groups_.insert(field.group, form);
    return form;
}

void PanelAssembler::add(const PanelField &field)
{
    QFormLayout *form = formFor(field);
    if (field.kind != PanelField::Kind::Button || form != buttonRowForm_) {
        buttonRow_ = nullptr;
        buttonRowForm_ = nullptr;
    }
    QWidget *widget = makeField(field, form);
    if (widget)
        bindEnabled(field, widget, form);
}

void PanelAssembler::addChecks(const QList<PanelField> &checks)
{
    QFormLayout *form = formFor(checks.first());
    buttonRow_ = nullptr;
    buttonRowForm_ = nullptr;
    auto *grid = new QGridLayout;
    const int rows = int(checks.size() + kCheckColumns - 1) / kCheckColumns;
    for (int i = 0; i < checks.size(); ++i) {
        QWidget *check = checkField(checks.at(i));
        grid->addWidget(check, i % rows, i / rows);
        bindEnabled(checks.at(i), check, form);
    }
    form->addRow(grid);
}

QWidget *PanelAssembler::makeField(const PanelField &field, QFormLayout *form)
{
    using Kind = PanelField::Kind;
    QWidget *widget = nullptr;
    switch (field.kind) {
    case Kind::Label: {
        auto *label = new QLabel(text(field.label), panel_);
        label->setWordWrap(true);
        form->addRow(label);
        return label;
    }
    case Kind::Separator: {
        auto *line = new QFrame(panel_);
        line->setFrameShape(QFrame::HLine);
        line->setFrameShadow(QFrame::Sunken);
        form->addRow(line);
        return line;
    }
    case Kind::Check:
        widget = checkField(field);
        form->addRow(widget);
        return widget;
    case Kind::Button:
        return buttonField(field, form);
    case Kind::Text:
        widget = textField(field);
        break;
    case Kind::MultilineText:
        widget = multilineField(field);
        break;
    case Kind::Number:
        widget = numberField(field);
        break;
    case Kind::Choice:
        widget = choiceField(field, field.choiceLabels, field.choiceValues);
        break;
    case Kind::Tag: {
        QVariantList values = field.choiceValues;
        if (values.isEmpty())
            for (qint64 number = 1; number <= 29; ++number)
                values.append(number);
        QStringList labels = field.choiceLabels;
        if (labels.size() != values.size()) {
            labels.clear();
            for (const QVariant &value : values)
                labels.append(PanelBuilder::tagName(value.toLongLong()));
        }
        widget = choiceField(field, labels, values);
        break;
    }
    case Kind::Folder:
        widget = folderField(field);
        break;
    }
    if (field.label.isEmpty())
        form->addRow(widget);
    else
        form->addRow(text(field.label), widget);
    return widget;
}

QWidget *PanelAssembler::textField(const PanelField &field)
{
    auto *edit = new QLineEdit(panel_);
    auto *link = PropertyLink::create(target_, field.property, edit, [edit](const QVariant &value) {
        if (edit->text() != value.toString())
            edit->setText(value.toString());
    });
    if (link)
        QObject::connect(edit, &QLineEdit::textEdited, link, [link](const QString &value) { link->write(value); });
    else
        edit->setDisabled(true);
    return edit;
}

QWidget *PanelAssembler::multilineField(const PanelField &field)
{
    auto *edit = new QPlainTextEdit(panel_);
    edit->setTabChangesFocus(true);
    edit->setFixedHeight(edit->fontMetrics().lineSpacing() * 5);
    auto *link = PropertyLink::create(target_, field.property, edit, [edit](const QVariant &value) {
        if (edit->toPlainText() != value.toString())
            edit->setPlainText(value.toString());
    });
    if (link)
        QObject::connect(edit, &QPlainTextEdit::textChanged, link, [link, edit] { link->write(edit->toPlainText()); });
    else
        edit->setDisabled(true);
    return edit;
}

QWidget *PanelAssembler::numberField(const PanelField &field)
{
    auto *spin = new QSpinBox(panel_);
    spin->setRange(clampToInt(field.minimum), clampToInt(field.maximum));
    auto *link = PropertyLink::create(target_, field.property, spin, [spin](const QVariant &value) {
        spin->setValue(clampToInt(value.toLongLong()));
    });
    if (link)
        QObject::connect(spin, &QSpinBox::valueChanged, link, [link](int value) { link->write(qint64(value)); });
    else
        spin->setDisabled(true);
    return spin;
}

QWidget *PanelAssembler::checkField(const PanelField &field)
{
    auto *check = new QCheckBox(text(field.label), panel_);
    auto *link = PropertyLink::create(target_, field.property, check,
                                      [check](const QVariant &value) { check->setChecked(value.toBool()); });
    if (link)
        QObject::connect(check, &QCheckBox::toggled, link, [link](bool on) { link->write(on); });
    else
        check->setDisabled(true);
    return check;
}

QWidget *PanelAssembler::choiceField(const PanelField &field, QStringList labels, QVariantList values)
{
    auto *box = new QComboBox(panel_);
    for (const QString &label : labels)
        box->addItem(text(label));
    auto *link = PropertyLink::create(target_, field.property, box, [box, values](const QVariant &value) {
        int index = -1;
        if (values.isEmpty())
            index = value.toInt();
        else
            for (int i = 0; i < values.size() && index < 0; ++i)
                if (sameValue(value, values.at(i)))
                    index = i;
        box->setCurrentIndex(index < box->count() ? index : -1);
    });
    if (link)
        QObject::connect(box, &QComboBox::activated, link, [link, values](int index) {
            link->write(values.isEmpty() ? QVariant(qint64(index)) : values.value(index));
        });
    else
        box->setDisabled(true);
    return box;
}

QWidget *PanelAssembler::folderField(const PanelField &field)
{
    auto *row = new QWidget(panel_);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *edit = new QLineEdit(row);
    auto *choose = new QPushButton(ov_localizedString(QStringLiteral("0008.0020")), row);
    layout->addWidget(edit, 1);
    layout->addWidget(choose);
    auto *link = PropertyLink::create(target_, field.property, row, [edit](const QVariant &value) {
        if (edit->text() != value.toString())
            edit->setText(value.toString());
    });
    if (!link) {
        row->setDisabled(true);
        return row;
    }
    QObject::connect(edit, &QLineEdit::textEdited, link, [link](const QString &value) { link->write(value); });
    const QString caption = text(field.label);
    QObject::connect(choose, &QPushButton::clicked, link, [link, edit, row, caption] {
        const QString path = QFileDialog::getExistingDirectory(row, caption, edit->text());
        if (!path.isEmpty())
            link->write(path);
    });
    return row;
}

QWidget *PanelAssembler::buttonField(const PanelField &field, QFormLayout *form)
{
    if (!buttonRow_) {
        auto *row = new QWidget(panel_);
        buttonRow_ = new QHBoxLayout(row);
        buttonRow_->setContentsMargins(0, 0, 0, 0);
        buttonRow_->addStretch(1);
        buttonRowForm_ = form;
        form->addRow(row);
    }
    auto *button = new QPushButton(text(field.label), panel_);
    buttonRow_->insertWidget(buttonRow_->count() - 1, button);
    const QByteArray action = field.action.toLatin1();
    QPointer<QObject> target = target_;
    QObject::connect(button, &QPushButton::clicked, button, [target, action] {
        if (target && !QMetaObject::invokeMethod(target, action.constData()))
            qCWarning(lcPanels) << "no invokable" << action << "on" << target->metaObject()->className();
    });
    return button;
}

void PanelAssembler::bindEnabled(const PanelField &field, QWidget *widget, QFormLayout *form)
{
    if (field.enabledBy.isEmpty())
        return;
    QList<QPointer<QWidget>> widgets{widget};
    if (QWidget *label = form->labelForField(widget))
        widgets.append(label);
    PropertyLink::create(target_, field.enabledBy, widget, [widgets](const QVariant &value) {
        for (const QPointer<QWidget> &each : widgets)
            if (each)
                each->setEnabled(value.toBool());
    });
}

} // namespace

QWidget *PanelBuilder::build(const PanelDescription &description, QObject *target, QWidget *parent)
{
    auto *panel = new QWidget(parent);
    PanelAssembler assembler(target, panel);
    const QList<PanelField> &fields = description.fields;
    for (qsizetype i = 0; i < fields.size();) {
        qsizetype end = i;
        while (end < fields.size() && fields.at(end).kind == PanelField::Kind::Check
               && fields.at(end).group == fields.at(i).group)
            ++end;
        if (end - i >= kChecksInColumns) {
            assembler.addChecks(fields.mid(i, end - i));
            i = end;
        } else {
            assembler.add(fields.at(i++));
        }
    }
    assembler.finish();
    return panel;
}

QString PanelBuilder::tagName(qint64 number)
{
    static const QStringList names{
        QStringLiteral("Name"), QStringLiteral("Artist"), QStringLiteral("Album"), QStringLiteral("Album Artist"),
        QStringLiteral("Composer"), QStringLiteral("Show"), QStringLiteral("Disc Number"),
        QStringLiteral("Track Number"), QStringLiteral("Season Number"), QStringLiteral("Episode Number"),
        QStringLiteral("Genre"), QStringLiteral("Year"), QStringLiteral("Grouping"), QStringLiteral("Description"),
        QStringLiteral("Comments"), QStringLiteral("Lyrics"), QStringLiteral("Episode ID"),
        QStringLiteral("Play Count"), QStringLiteral("Rating"), QStringLiteral("Album Rating"),
        QStringLiteral("Sort Name"), QStringLiteral("Sort Artist"), QStringLiteral("Sort Album"),
        QStringLiteral("Sort Album Artist"), QStringLiteral("Sort Composer"), QStringLiteral("Sort Show"),
        QStringLiteral("Disc Count"), QStringLiteral("Track Count"), QStringLiteral("BPM")};
    if (number == 0)
        return QStringLiteral("None"); // an optional tag left out
    return number >= 1 && number <= names.size() ? names.at(number - 1) : QString::number(number);
}
