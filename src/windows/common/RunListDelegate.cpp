#include "windows/common/RunListDelegate.h"

#include <QApplication>
#include <QListWidget>
#include <QPainter>

#include <algorithm>

namespace sendrel {

namespace {

constexpr int kTextMargin = 4;

QString headOf(const QString &text)
{
    const qsizetype tab = text.indexOf(QLatin1Char('\t'));
    return tab < 0 ? text : text.left(tab);
}

// The description, on one line: a description may hold line breaks.
QString tailOf(const QString &text)
{
    const qsizetype tab = text.indexOf(QLatin1Char('\t'));
    return tab < 0 ? QString() : text.mid(tab + 1).simplified();
}

}  // namespace

RunListDelegate::RunListDelegate(QListWidget *list) : QStyledItemDelegate(list), m_list(list), m_tabStop(0)
{
    m_tabStop = BaseTabStop();
}

int RunListDelegate::BaseTabStop() const
{
    // A dialog unit across is a quarter of the font's average letter width.
    const QFontMetrics fm(m_list->font());
    static const QString letters = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    const double average = fm.horizontalAdvance(letters) / 52.0;
    return static_cast<int>(kTabStopDialogUnits * average / 4.0 + 0.5);
}

void RunListDelegate::UpdateTabStop()
{
    const QFontMetrics fm(m_list->font());
    int widest = 0;
    for (int i = 0; i < m_list->count(); ++i)
        widest = std::max(widest, fm.horizontalAdvance(headOf(m_list->item(i)->text())));
    m_tabStop = std::max(BaseTabStop(), widest + fm.horizontalAdvance(QStringLiteral("MM")));
    // A description longer than the list is wide ends in "..." there; its tip shows it whole.
    for (int i = 0; i < m_list->count(); ++i) {
        QListWidgetItem *item = m_list->item(i);
        item->setToolTip(DescriptionOf(item->text()));
    }
    m_list->viewport()->update();
}

void RunListDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem opt = option;
    initStyleOption(&opt, index);
    const QString text = opt.text;
    opt.text.clear();
    const QWidget *widget = opt.widget;
    QStyle *style = widget ? widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &opt, painter, widget);

    const bool selected = opt.state & QStyle::State_Selected;
    painter->save();
    painter->setFont(opt.font);
    painter->setPen(opt.palette.color(opt.state & QStyle::State_Enabled ? QPalette::Normal : QPalette::Disabled,
                                      selected ? QPalette::HighlightedText : QPalette::Text));
    const QRect r = opt.rect.adjusted(kTextMargin, 0, -kTextMargin, 0);
    const QRect head(r.left(), r.top(), m_tabStop - kTextMargin, r.height());
    painter->drawText(head, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                      opt.fontMetrics.elidedText(headOf(text), Qt::ElideRight, head.width()));
    const QRect tail(r.left() + m_tabStop, r.top(), std::max(0, r.width() - m_tabStop), r.height());
    painter->drawText(tail, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                      opt.fontMetrics.elidedText(tailOf(text), Qt::ElideRight, tail.width()));
    painter->restore();
}

QSize RunListDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    // As wide as the heads: the description takes the room the list has and is elided in it,
    // so that no row pushes a scroll bar out.
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.setWidth(kTextMargin * 2 + m_tabStop);
    return size;
}

QString RunListDelegate::DescriptionOf(const QString &entry)
{
    return tailOf(entry);
}

}  // namespace sendrel
