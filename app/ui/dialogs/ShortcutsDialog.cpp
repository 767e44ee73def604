// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/ShortcutsDialog.h"

#include "app/ui/commands/MainMenu.h"
#include "app/ui/dialogs/DialogParts.h"
#include "app/ui/widgets/Theme.h"

#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace plovik {

namespace {

constexpr int keyRowPadding = 10;
constexpr int pageHeight = 360;
constexpr int pageWidth = 640;

int pageWidthOnScreen()
{
    return std::min(Theme::scaled(pageWidth), QGuiApplication::primaryScreen()->availableSize().width() * 9 / 10);
}
/// What a long text has at least.
int nameWidth() { return pageWidthOnScreen() * 42 / 100; }
int keysWidth() { return pageWidthOnScreen() * 45 / 100; }

constexpr ListKeys keysOfLists[] = {
    {"F10, Alt", QT_TRANSLATE_NOOP("plovik::ShortcutsDialog", "go into the menu bar")},
    {"F6, Shift+F6",
     QT_TRANSLATE_NOOP("plovik::ShortcutsDialog", "next and previous pane: sidebar, lists, texts, diffs, message")},
    {"Up, Down, Page Up, Page Down, Home, End",
     QT_TRANSLATE_NOOP("plovik::ShortcutsDialog",
                       "walk through the history; End reads it to its end, Home or Escape stop that")},
    {"F2", QT_TRANSLATE_NOOP("plovik::ShortcutsDialog", "in the sidebar: rename the branch")},
    {"F2, Delete", QT_TRANSLATE_NOOP("plovik::ShortcutsDialog",
                                     "in the history: edit the message of the commit, drop it, in a plan")},
    {"Ctrl+Up, Ctrl+Down, Ctrl+Shift+K",
     QT_TRANSLATE_NOOP("plovik::ShortcutsDialog",
                       "in the history: move the commits up and down, squash them into their parent, in a plan")},
    {"Ctrl+Return, Escape", QT_TRANSLATE_NOOP("plovik::ShortcutsDialog", "in the history: apply the plan, drop it")},
    {"Space, Return, Delete", QT_TRANSLATE_NOOP("plovik::ShortcutsDialog",
                                                "in the changed files: stage or unstage, open in the editor, discard")},
    {"Space, Return",
     QT_TRANSLATE_NOOP("plovik::ShortcutsDialog", "in the files of a commit: go to the diff, open in the editor")},
    {"/, Left, Right",
     QT_TRANSLATE_NOOP("plovik::ShortcutsDialog", "in lists of files: filter, fold and open a folder or a diff")},
    {"Return or S, Delete or Backspace",
     QT_TRANSLATE_NOOP("plovik::ShortcutsDialog", "in a diff: stage or unstage, discard")},
    {"Alt+Down, Alt+Up", QT_TRANSLATE_NOOP("plovik::ShortcutsDialog", "in a diff: next and previous hunk")},
    {"N, P", QT_TRANSLATE_NOOP("plovik::ShortcutsDialog",
                               "in a diff: next and previous hunk, or change where it is only read")},
    {"Space, Escape",
     QT_TRANSLATE_NOOP("plovik::ShortcutsDialog", "in a diff: select the line besides others, select nothing")},
    {"Left, Right", QT_TRANSLATE_NOOP("plovik::ShortcutsDialog", "in a diff side by side: the other side")},
    {"Ctrl+Down, Ctrl+Up", QT_TRANSLATE_NOOP("plovik::ShortcutsDialog", "in a diff: more lines below, above")},
    {"Ctrl+Home, Ctrl+End", QT_TRANSLATE_NOOP("plovik::ShortcutsDialog", "in a diff: the first line and the last")},
    {"F8, Shift+F8", QT_TRANSLATE_NOOP("plovik::ShortcutsDialog", "in a merge: next and previous conflict")},
    {"Alt+1, Alt+2", QT_TRANSLATE_NOOP("plovik::ShortcutsDialog", "in a merge: take the left side, the right side")},
    {"Alt+3, Alt+Shift+3",
     QT_TRANSLATE_NOOP("plovik::ShortcutsDialog", "in a merge: take both, the left first or the right first")},
    {"Alt+0", QT_TRANSLATE_NOOP("plovik::ShortcutsDialog", "in a merge: take neither side, or leave a change out")},
    {"Alt+B", QT_TRANSLATE_NOOP("plovik::ShortcutsDialog", "in a merge: show the version that both sides come from")},
    {"Space, S, Ctrl+Return",
     QT_TRANSLATE_NOOP("plovik::ShortcutsDialog",
                       "in a commit that is split: tick the line, or the hunk, for the first commit, and split")},
    {"Ctrl+Return", QT_TRANSLATE_NOOP("plovik::ShortcutsDialog", "in a merge: mark resolved")},
    {"Ctrl+F, F3, Shift+F3",
     QT_TRANSLATE_NOOP("plovik::ShortcutsDialog",
                       "in a diff or a blame: find, next and previous match; elsewhere Ctrl+F searches the history")},
    {"Return, B, Backspace",
     QT_TRANSLATE_NOOP("plovik::ShortcutsDialog", "in blame: show the commit, as it was before this commit, and back")},
    {"Ctrl+Tab, Escape",
     QT_TRANSLATE_NOOP("plovik::ShortcutsDialog", "in blame and the history of a file: the other of both, close")},
};

QTreeWidgetItem* addTitle(QTreeWidget& list, const QString& title)
{
    auto* const item = new QTreeWidgetItem(&list, {title});
    item->setFirstColumnSpanned(true);
    item->setData(1, Qt::AccessibleTextRole, title);
    item->setSizeHint(0, {0, QFontMetrics(Theme::font()).height() + 2 * keyRowPadding});
    item->setTextAlignment(0, Qt::AlignBottom);
    item->setFlags(Qt::ItemIsEnabled);
    item->setFont(0, Theme::font(-0.5, QFont::DemiBold));
    item->setForeground(0, list.palette().color(QPalette::PlaceholderText));
    return item;
}

void addKeys(QTreeWidgetItem* title, const QString& name, const QString& keys)
{
    auto* const item = new QTreeWidgetItem(title, {name, keys});
    const QFontMetrics metrics(Theme::font());
    const int lines =
        1 + std::max(metrics.horizontalAdvance(name) / nameWidth(), metrics.horizontalAdvance(keys) / keysWidth());
    item->setSizeHint(0, {0, lines * metrics.height() + keyRowPadding});
    item->setTextAlignment(0, Qt::AlignVCenter);
    item->setData(0, Qt::AccessibleTextRole, ShortcutsDialog::tr("%1: %2", "command: keys").arg(name, keys));
}

} // namespace

std::span<const ListKeys> listKeys() { return keysOfLists; }

ShortcutsDialog::ShortcutsDialog(QWidget* parent)
    : QDialog(parent), filter_(new QLineEdit(this)), list_(new QTreeWidget(this))
{
    dialogParts::prepare(*this, tr("Keyboard Shortcuts"));
    setWindowModality(Qt::NonModal);
    filter_->setAccessibleName(tr("Filter Shortcuts"));
    filter_->setPlaceholderText(tr("Filter by name or key"));
    filter_->setClearButtonEnabled(true);
    filter_->installEventFilter(this);
    connect(filter_, &QLineEdit::textChanged, this, &ShortcutsDialog::filter);

    list_->setAccessibleName(tr("Shortcuts"));
    list_->setColumnCount(2);
    list_->setHeaderHidden(true);
    list_->setRootIsDecorated(false);
    list_->setItemsExpandable(false);
    list_->setIndentation(12);
    list_->setMinimumHeight(160);
    list_->setWordWrap(true);
    addGroups();
    list_->expandAll();
    list_->header()->setStretchLastSection(false);
    list_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    list_->header()->setSectionResizeMode(1, QHeaderView::Fixed);
    list_->header()->resizeSection(1, keysWidth());

    auto* const close = new QPushButton(tr("Close"), this);
    close->setAutoDefault(false);
    connect(close, &QPushButton::clicked, this, &QDialog::close);
    QVBoxLayout* const column = dialogParts::column(*this);
    column->addWidget(filter_);
    column->addWidget(list_, 1);
    column->addSpacing(4);
    column->addLayout(dialogParts::buttonRow({close}));
    dialogParts::fit(*this, pageWidthOnScreen(), pageHeight - list_->sizeHint().height());
    filter_->setFocus();
}

void ShortcutsDialog::addGroups()
{
    for (const mainMenu::Group& group : mainMenu::groups()) {
        QTreeWidgetItem* const title = addTitle(*list_, group.title);
        for (const CommandId id : group.commands) {
            const Command& listed = command(id);
            if (!listed.shortcut().isEmpty())
                addKeys(title, listed.title().remove(u'…'), listed.shortcut().toString(QKeySequence::NativeText));
        }
        if (title->childCount() == 0)
            delete title;
    }
    QTreeWidgetItem* const title = addTitle(*list_, tr("In Lists and Diffs"));
    for (const ListKeys& each : listKeys())
        addKeys(title, tr(each.meaning), QLatin1String(each.keys));
}

void ShortcutsDialog::filter(const QString& text)
{
    const QStringList words = text.split(u' ', Qt::SkipEmptyParts);
    for (int group = 0; group < list_->topLevelItemCount(); ++group) {
        QTreeWidgetItem* const title = list_->topLevelItem(group);
        bool isSeen = false;
        for (int row = 0; row < title->childCount(); ++row) {
            QTreeWidgetItem* const item = title->child(row);
            const QString whole = item->text(0) + u' ' + item->text(1);
            const bool isMatch = std::ranges::all_of(
                words, [&whole](const QString& word) { return whole.contains(word, Qt::CaseInsensitive); });
            item->setHidden(!isMatch);
            isSeen |= isMatch;
        }
        title->setHidden(!isSeen);
    }
}

bool ShortcutsDialog::eventFilter(QObject* watched, QEvent* event)
{
    // The arrows go from the field into the list.
    if (watched == filter_ && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Down || key == Qt::Key_PageDown) {
            list_->setFocus(Qt::TabFocusReason);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void showShortcuts(QWidget& window)
{
    auto* dialog = window.findChild<ShortcutsDialog*>();
    if (!dialog)
        dialog = new ShortcutsDialog(&window);
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
}

} // namespace plovik

#include "moc_ShortcutsDialog.cpp"
