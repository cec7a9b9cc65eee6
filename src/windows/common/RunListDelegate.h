#pragma once

#include <QStyledItemDelegate>

class QListWidget;

namespace sendrel {

// Draws a run list row ("Run Id:Standing", a tab, the description) with the description at a
// tab stop, so that the descriptions of all rows stand in one column; a description too long for
// the list ends in "...", and the row's tip shows it whole.
class RunListDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    explicit RunListDelegate(QListWidget *list);

    // The first tab stop, 105 dialog units, in pixels of the list's font.
    int BaseTabStop() const;
    // Moves the description column behind the longest head of the list, never before the first
    // tab stop. Call after the list was filled.
    void UpdateTabStop();
    int TabStop() const { return m_tabStop; }

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    static constexpr int kTabStopDialogUnits = 105;
    // The description of a row, on one line.
    static QString DescriptionOf(const QString &entry);

private:
    QListWidget *m_list;
    int m_tabStop;
};

}  // namespace sendrel
