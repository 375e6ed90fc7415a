#include "pool/gui/functionpoolwindow.h"

#include "additions/localizedstrings.h"
#include "application/apppreferences.h"
#include "pool/functionpoolcontroller.h"
#include "pool/functionpoollog.h"
#include "pool/gui/functionsheetregistry.h"
#include "pool/gui/panelbuilder.h"
#include "pool/gui/poolpreferencessheet.h"
#include "pool/gui/poolsheets.h"
#include "pool/poolfunction.h"
#include "pool/poolfunctionregistry.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QGraphicsOpacityEffect>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPropertyAnimation>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QStackedWidget>
#include <QStyle>
#include <QToolBar>
#include <QUrl>
#include <QVBoxLayout>

namespace {

QString text(const char *key)
{
    return ov_localizedString(QString::fromLatin1(key));
}

QLabel *headline(const QString &title, QWidget *parent)
{
    auto *label = new QLabel(title, parent);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * 1.4);
    font.setBold(true);
    label->setFont(font);
    return label;
}

QLabel *paragraph(const QString &content, QWidget *parent)
{
    auto *label = new QLabel(content, parent);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

} // namespace

FunctionPoolWindow::FunctionPoolWindow(const PoolFunctionRegistry &functions, const FunctionSheetRegistry &sheets,
                                       QWidget *parent)
    : QMainWindow(parent)
{
    setWindowTitle(text("0000.0001"));
    // A plain window: closing is the only window-manager action it offers.
    setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    pool_ = new FunctionPoolController(this, functions, this);

    progress_ = new ProgressSheet(this);
    connect(progress_, &ProgressSheet::cancelClicked, this, [this] { pool_->clickFunctionCancel(); });
    FunctionPoolLog *log = pool_->myFunctionPoolLog();
    logSheet_ = new LogSheet(QStringLiteral("0008.0013"), {QString(), QStringLiteral("0008.0015")}, log, this);
    connect(logSheet_, &LogSheet::rowsActivated, log, &FunctionPoolLog::revealItem);
    errorLogSheet_ = new LogSheet(QStringLiteral("0008.0014"),
                                  {QStringLiteral("0008.0016"), QStringLiteral("0008.0017")},
                                  pool_->myFunctionPoolErrorLog(), this);
    preferencesSheet_ = new PoolPreferencesSheet(pool_->myPreferences(), this, this);

    makeToolbar();

    navigator_ = new QListWidget(this);
    navigator_->setObjectName(QStringLiteral("functionNavigator"));
    navigator_->setUniformItemSizes(true);
    navigator_->setSpacing(2);
    viewStack_ = new QStackedWidget(this);
    views_.insert(kStartPanel, makeStartView());
    viewStack_->addWidget(views_.value(kStartPanel));
    for (const PoolFunctionRegistry::Entry &entry : functions.entries()) {
        if (!pool_->myFunction(entry.number))
            continue;
        auto *item = new QListWidgetItem(entry.title, navigator_);
        item->setData(Qt::UserRole, entry.number);
        item->setToolTip(PoolFunctionRegistry::className(entry.number));
        QWidget *view = makeFunctionView(entry.number, entry.title, sheets);
        views_.insert(entry.number, view);
        viewStack_->addWidget(view);
    }
    // Selection, not the current item: focus alone makes the first item current.
    connect(navigator_, &QListWidget::itemSelectionChanged, this, [this] {
        const QList<QListWidgetItem *> selected = navigator_->selectedItems();
        clickFunctionNavigator(selected.isEmpty() ? kStartPanel : selected.first()->data(Qt::UserRole).toLongLong());
    });

    auto *splitter = new QSplitter(this);
    splitter->addWidget(navigator_);
    splitter->addWidget(viewStack_);
    splitter->setStretchFactor(1, 1);
    splitter->setChildrenCollapsible(false);
    navigator_->setMinimumWidth(240);
    splitter->setSizes({270, 630});
    setCentralWidget(splitter);
    switchToFunctionView(kStartPanel);
    resize(900, 600);
    navigator_->setFocus();
}

FunctionPoolWindow::~FunctionPoolWindow()
{
    // The engine reaches this front end until it is closed.
    pool_->close();
    delete pool_;
}

void FunctionPoolWindow::makeToolbar()
{
    QToolBar *toolbar = addToolBar(text("0000.0001"));
    toolbar->setMovable(false);
    toolbar->setFloatable(false);
    toolbar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    toolbar->toggleViewAction()->setVisible(false);
    QAction *preferences = toolbar->addAction(style()->standardIcon(QStyle::SP_FileDialogDetailedView),
                                              text("0008.0001"));
    preferences->setShortcut(QKeySequence(QStringLiteral("Ctrl+,")));
    connect(preferences, &QAction::triggered, this, [this] { clickToolbarItem(PreferencesItem); });
    QAction *log = toolbar->addAction(style()->standardIcon(QStyle::SP_FileDialogContentsView), text("0008.0002"));
    log->setToolTip(text("0008.0003"));
    log->setShortcut(QKeySequence(QStringLiteral("Ctrl+L")));
    connect(log, &QAction::triggered, this, [this] { clickToolbarItem(LogItem); });
    libraryAction_ = toolbar->addAction(style()->standardIcon(QStyle::SP_DirHomeIcon), text("0008.0004"));
    libraryAction_->setEnabled(false);
    connect(libraryAction_, &QAction::triggered, this, [this] { clickToolbarItem(LibraryItem); });
}

QWidget *FunctionPoolWindow::makeStartView()
{
    auto *view = new QWidget(this);
    auto *layout = new QVBoxLayout(view);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->addWidget(headline(text("0008.0007"), view));
    layout->addWidget(paragraph(text("0008.0008"), view));
    layout->addWidget(paragraph(text("0008.0009"), view));
    layout->addStretch(1);
    return view;
}

QWidget *FunctionPoolWindow::makeFunctionView(qint64 number, const QString &title,
                                              const FunctionSheetRegistry &sheets)
{
    PoolFunction *function = pool_->myFunction(number);
    const PanelDescription description = function->panelDescription();
    auto *view = new QWidget(this);
    auto *layout = new QVBoxLayout(view);
    layout->setContentsMargins(16, 12, 16, 12);
    layout->addWidget(headline(description.title.isEmpty() ? title : ov_localizedString(description.title), view));
    if (!description.summary.isEmpty())
        layout->addWidget(paragraph(ov_localizedString(description.summary), view));

    auto *scroll = new QScrollArea(view);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    QWidget *panel = PanelBuilder::build(description, function, scroll);
    panel->setObjectName(QStringLiteral("functionPanel"));
    scroll->setWidget(panel);
    layout->addWidget(scroll, 1);

    auto *run = new QPushButton(text("0008.0005"), view);
    run->setObjectName(QStringLiteral("runButton"));
    run->setToolTip(text("0008.0006"));
    run->setDefault(true);
    connect(run, &QPushButton::clicked, this, &FunctionPoolWindow::clickFunctionRun);
    auto *bottom = new QHBoxLayout;
    bottom->addStretch(1);
    bottom->addWidget(run);
    layout->addLayout(bottom);
    sheets.attachSheets(number, function, this);
    return view;
}

void FunctionPoolWindow::setOpenLibraryWindow(std::function<void()> open)
{
    openLibraryWindow_ = std::move(open);
    libraryAction_->setEnabled(bool(openLibraryWindow_));
}

void FunctionPoolWindow::clickFunctionNavigator(qint64 number)
{
    if (!views_.contains(number))
        number = kStartPanel;
    if (number == shownFunction_)
        return;
    if (number == kStartPanel)
        setWindowTitle(text("0000.0001"));
    const double seconds = AppPreferences::kViewFadeTime;
    switchToFunctionView(number);
    if (seconds <= 0)
        return;
    auto *effect = new QGraphicsOpacityEffect(viewStack_);
    effect->setOpacity(0);
    viewStack_->setGraphicsEffect(effect);
    auto *fade = new QPropertyAnimation(effect, "opacity", effect);
    fade->setDuration(int(seconds * 1000));
    fade->setEndValue(1.0);
    // The effect renders off screen; it goes once the panel is fully there.
    connect(fade, &QPropertyAnimation::finished, viewStack_, [this] { viewStack_->setGraphicsEffect(nullptr); });
    fade->start();
}

void FunctionPoolWindow::switchToFunctionView(qint64 number)
{
    shownFunction_ = number;
    viewStack_->setCurrentWidget(views_.value(number));
    QListWidgetItem *selected = nullptr;
    for (int row = 0; row < navigator_->count() && !selected; ++row)
        if (navigator_->item(row)->data(Qt::UserRole).toLongLong() == number)
            selected = navigator_->item(row);
    const QSignalBlocker blocker(navigator_);
    navigator_->clearSelection();
    if (selected)
        navigator_->setCurrentItem(selected);
}

void FunctionPoolWindow::clickFunctionRun()
{
    if (shownFunction_ != kStartPanel)
        pool_->clickFunctionRun(shownFunction_);
}

void FunctionPoolWindow::clickToolbarItem(int tag)
{
    switch (tag) {
    case PreferencesItem:
        openPreferencesPanel();
        break;
    case LogItem:
        if (isAltKeyHeld())
            pool_->myFunctionPoolErrorLog()->openErrorLogPanel();
        else
            pool_->myFunctionPoolLog()->openLogPanel();
        break;
    case LibraryItem:
        if (openLibraryWindow_)
            openLibraryWindow_();
        break;
    default:
        pool_->showAlertMessage(PoolAlertCode::Failure);
        break;
    }
}

void FunctionPoolWindow::openPreferencesPanel()
{
    preferencesSheet_->open();
}

// --- The engine's front end

void FunctionPoolWindow::progressOpen()
{
    progress_->open();
}

void FunctionPoolWindow::progressEmpty()
{
    progress_->empty();
}

void FunctionPoolWindow::progressValues(qint64 total)
{
    progress_->setValues(total);
}

void FunctionPoolWindow::progressUpdate(qint64 counter)
{
    progress_->update(counter);
}

void FunctionPoolWindow::progressComment(const QString &comment)
{
    progress_->setComment(comment);
}

void FunctionPoolWindow::progressClose()
{
    progress_->hide();
}

void FunctionPoolWindow::setCancelEnabled(bool enabled)
{
    progress_->setCancelEnabled(enabled);
}

QWidget *FunctionPoolWindow::sheetParent()
{
    if (preferencesSheet_->isVisible())
        return preferencesSheet_;
    return this;
}

void FunctionPoolWindow::presentAlert(const PoolAlert &alert, AlertCompletion completion)
{
    openAlertSheet(sheetParent(), alert, std::move(completion));
}

void FunctionPoolWindow::chooseFolder(const QString &messageKey, FolderAnswer answer)
{
    auto *dialog = new QFileDialog(this, ov_localizedString(messageKey));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QDialog::finished, dialog, [dialog, answer](int result) {
        answer(result == QDialog::Accepted ? dialog->selectedFiles().value(0) : QString());
    });
    dialog->open();
}

bool FunctionPoolWindow::isAltKeyHeld() const
{
    return QGuiApplication::queryKeyboardModifiers().testFlag(Qt::AltModifier);
}

void FunctionPoolWindow::openLogPanel()
{
    logSheet_->open();
}

void FunctionPoolWindow::openErrorLogPanel()
{
    errorLogSheet_->open();
}

void FunctionPoolWindow::revealFile(const QString &path)
{
    // The desktop's file manager selects the file; without one, its folder opens.
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList{QUrl::fromLocalFile(path).toString()} << QString();
    auto *watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    const QString folder = QFileInfo(path).absolutePath();
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, folder] {
        if (watcher->isError())
            QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
        watcher->deleteLater();
    });
}
