#include "shortcut_dialog.h"

#include <QDialogButtonBox>
#include <QMenu>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace {

QString row(const QString& keys, const QString& meaning) {
    return "<tr><td width='190'><b>" + keys.toHtmlEscaped() + "</b></td><td>" +
           meaning.toHtmlEscaped() + "</td></tr>";
}

QString plain(QString text) {
    text.remove('&');
    if (text.endsWith("...")) text.chop(3);
    return text;
}

QString keysOf(const QAction& action) {
    QStringList keys;
    for (const QKeySequence& key : action.shortcuts())
        keys << key.toString(QKeySequence::NativeText);
    return keys.join(", ");
}

/// `group` is the menu within a menu that the entries stand in.
QString rowsOf(const QMenu& menu, const QString& group = {}) {
    QString rows;
    for (const QAction* action : menu.actions()) {
        if (action->menu() != nullptr)
            rows += rowsOf(*action->menu(), plain(action->text()) + ": ");
        // Undo and redo tell of what as well, in the menu.
        const QVariant name = action->property(PLAIN_NAME);
        const QString text = name.isValid() ? name.toString() : plain(action->text());
        if (!action->shortcut().isEmpty()) rows += row(keysOf(*action), group + text);
    }
    return rows;
}

QString plateRows() {
    return row(QObject::tr("Arrow keys"), QObject::tr("Move the hand on the plate by an element, "
                                                      "with Shift by five")) +
           row(QObject::tr("Enter"),
               QObject::tr("Press the tool at the hand; Enter again lets go")) +
           row(QObject::tr("Esc"), QObject::tr("Take back what the tool is doing")) +
           row(QObject::tr("N, Shift+N"),
               QObject::tr("Select the next or previous load (with Select and drag)")) +
           row(QObject::tr("Ctrl and a click or a drag"),
               QObject::tr("Select several pieces, one by one or by a frame")) +
           row(QObject::tr("Arrow keys"), QObject::tr("Move what is selected")) +
           row(QObject::tr("Alt+Left, Right"), QObject::tr("Turn the selected load")) +
           row(QObject::tr("Alt+Up, Down"), QObject::tr("Make its force larger or smaller")) +
           row(QObject::tr("Shift while turning"),
               QObject::tr("Any angle and force, no snapping")) +
           row(QObject::tr("Shift and a press"),
               QObject::tr("A straight line from where the last stroke ended")) +
           row(QObject::tr("Right button"),
               QObject::tr("Open the menu of what is there; while drawing, rub out")) +
           row(QObject::tr("Wheel, + and −"), QObject::tr("Zoom")) +
           row(QObject::tr("Middle button, Ctrl+Arrow keys"),
               QObject::tr("Move the plate in the window"));
}

}  // namespace

ShortcutDialog::ShortcutDialog(const QMenuBar& menus, QWidget* parent) : QDialog(parent) {
    setWindowTitle(tr("Keyboard shortcuts"));
    resize(560, 620);
    QString text;
    for (const QAction* top : menus.actions()) {
        if (top->menu() == nullptr) continue;
        const QString rows = rowsOf(*top->menu());
        if (!rows.isEmpty())
            text += "<h3>" + plain(top->text()) + "</h3><table>" + rows + "</table>";
    }
    text += "<h3>" + tr("On the plate") + "</h3><table>" + plateRows() + "</table>";
    auto* browser = new QTextBrowser;
    browser->setHtml(text);
    browser->setAccessibleName(windowTitle());
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(browser);
    layout->addWidget(buttons);
}
