#include "pool/gui/panelbuilder.h"
#include "pool/poolfunction.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

#include <gtest/gtest.h>

#include <memory>

namespace {

// A function with one setting of each bound kind; enableText follows yourFlag, as the derived
// enable... properties of the real functions follow their settings.
class PanelTestFunction : public PoolFunction
{
    Q_OBJECT
    Q_PROPERTY(QString yourText MEMBER yourText NOTIFY settingsChanged)
    Q_PROPERTY(bool yourFlag MEMBER yourFlag NOTIFY flagChanged)
    Q_PROPERTY(qint64 yourCount MEMBER yourCount NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourForm MEMBER yourForm NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourTag MEMBER yourTag NOTIFY settingsChanged)
    Q_PROPERTY(bool enableText READ enableText NOTIFY flagChanged)

public:
    PanelTestFunction() : PoolFunction(nullptr) {}

    PoolFunctionAnswer doMyFunctionCheck() override { return PoolStep::GoOn; }
    PoolFunctionAnswer doMyFunctionPre() override { return PoolStep::GoOn; }
    void doMyFunctionMain(const ITunesTrack &) override {}
    void doMyFunctionEnd() override {}
    bool enableText() const { return yourFlag; }
    Q_INVOKABLE void clearText()
    {
        yourText.clear();
        emit settingsChanged();
    }

    PanelDescription panelDescription() const override
    {
        using Kind = PanelField::Kind;
        PanelDescription panel;
        panel.fields = {
            {.kind = Kind::Check, .property = "yourFlag", .label = "Flag", .group = "A"},
            {.kind = Kind::Text, .property = "yourText", .label = "Text", .enabledBy = "enableText", .group = "A"},
            {.kind = Kind::Number, .property = "yourCount", .label = "Count", .minimum = 1, .maximum = 50},
            {.kind = Kind::Choice, .property = "yourForm", .label = "Form", .choiceLabels = {"One", "Two", "Three"},
             .choiceValues = {10, 20, 30}},
            {.kind = Kind::Tag, .property = "yourTag", .label = "Tag"},
            {.kind = Kind::Button, .label = "Clear", .action = "clearText"},
        };
        return panel;
    }

    void set(const char *name, const QVariant &value)
    {
        setProperty(name, value);
        emit settingsChanged();
        emit flagChanged();
    }

    QString yourText = QStringLiteral("start");
    bool yourFlag = false;
    qint64 yourCount = 7;
    qint64 yourForm = 20;
    qint64 yourTag = 3;

signals:
    void settingsChanged();
    void flagChanged();
};

class PanelBuilderTest : public ::testing::Test
{
protected:
    void SetUp() override { panel.reset(PanelBuilder::build(function.panelDescription(), &function)); }

    template <class Widget>
    Widget *only() const
    {
        QList<Widget *> found;
        // Spin boxes hold a line edit of their own.
        for (Widget *widget : panel->findChildren<Widget *>())
            if (!qobject_cast<QAbstractSpinBox *>(widget->parent()))
                found.append(widget);
        EXPECT_EQ(found.size(), 1);
        return found.value(0);
    }

    PanelTestFunction function;
    std::unique_ptr<QWidget> panel;
};

TEST_F(PanelBuilderTest, FieldsShowTheirPropertiesAndFollowTheirChanges)
{
    auto *check = only<QCheckBox>();
    auto *text = only<QLineEdit>();
    auto *spin = only<QSpinBox>();
    const auto boxes = panel->findChildren<QComboBox *>();
    ASSERT_EQ(boxes.size(), 2);
    EXPECT_FALSE(check->isChecked());
    EXPECT_EQ(text->text(), "start");
    EXPECT_EQ(spin->value(), 7);
    EXPECT_EQ(spin->minimum(), 1);
    EXPECT_EQ(boxes[0]->currentText(), "Two");
    EXPECT_EQ(boxes[1]->count(), 29);
    EXPECT_EQ(boxes[1]->currentText(), "Album");

    function.set("yourFlag", true);
    function.set("yourText", "changed");
    function.set("yourCount", 12);
    function.set("yourForm", 30);
    function.set("yourTag", 11);
    EXPECT_TRUE(check->isChecked());
    EXPECT_EQ(text->text(), "changed");
    EXPECT_EQ(spin->value(), 12);
    EXPECT_EQ(boxes[0]->currentText(), "Three");
    EXPECT_EQ(boxes[1]->currentText(), "Genre");
}

TEST_F(PanelBuilderTest, EditingAFieldWritesItsProperty)
{
    only<QCheckBox>()->click();
    EXPECT_TRUE(function.yourFlag);
    auto *text = only<QLineEdit>();
    text->selectAll();
    text->insert("typed"); // as typing does: textEdited
    EXPECT_EQ(function.yourText, "typed");
    only<QSpinBox>()->setValue(42);
    EXPECT_EQ(function.yourCount, 42);
    const auto boxes = panel->findChildren<QComboBox *>();
    boxes[0]->activated(0);
    EXPECT_EQ(function.yourForm, 10); // the choice's value, not its index
    boxes[1]->activated(1);
    EXPECT_EQ(function.yourTag, 2);
}

TEST_F(PanelBuilderTest, EnabledByFollowsTheBoolPropertyForFieldAndLabel)
{
    auto *text = only<QLineEdit>();
    auto *form = qobject_cast<QFormLayout *>(text->parentWidget()->layout());
    ASSERT_NE(form, nullptr);
    QWidget *label = form->labelForField(text);
    ASSERT_NE(label, nullptr);
    EXPECT_FALSE(text->isEnabled());
    EXPECT_FALSE(label->isEnabled());
    only<QCheckBox>()->click(); // yourFlag on, and with it enableText
    EXPECT_TRUE(text->isEnabled());
    EXPECT_TRUE(label->isEnabled());
    EXPECT_TRUE(only<QSpinBox>()->isEnabled()); // fields without enabledBy stay as they are
}

TEST_F(PanelBuilderTest, ButtonCallsTheInvokableAndUnknownPropertiesLeaveAFieldDisabled)
{
    only<QPushButton>()->click();
    EXPECT_EQ(function.yourText, "");
    EXPECT_EQ(only<QLineEdit>()->text(), "");

    PanelDescription broken;
    broken.fields = {{.kind = PanelField::Kind::Text, .property = "noSuchProperty", .label = "Lost"}};
    std::unique_ptr<QWidget> lost(PanelBuilder::build(broken, &function));
    auto *edit = lost->findChild<QLineEdit *>();
    ASSERT_NE(edit, nullptr);
    EXPECT_FALSE(edit->isEnabled());
}

} // namespace

#include "panelbuilder_test.moc"
