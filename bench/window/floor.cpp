// SPDX-License-Identifier: GPL-3.0-or-later
/// A bare window with a list of 500 rows: the floor that no window of this toolkit can go below.

#include <QApplication>
#include <QListView>
#include <QStringListModel>
#include <QVBoxLayout>
#include <QWidget>

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);

    QStringList rows;
    for (int row = 0; row < 500; ++row)
        rows << QStringLiteral("Row %1 of a list that is as long as one page of a history").arg(row);
    QStringListModel model(rows);

    QWidget window;
    auto* const list = new QListView(&window);
    list->setModel(&model);
    list->setUniformItemSizes(true);
    auto* const layout = new QVBoxLayout(&window);
    layout->setContentsMargins({});
    layout->addWidget(list);
    window.resize(1240, 780);
    window.show();
    return QApplication::exec();
}
