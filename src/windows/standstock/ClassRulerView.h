#pragma once

#include "domain/standstock/ClassRuler.h"

#include <QFrame>
#include <QGroupBox>
#include <QLabel>

#include <array>

class QScrollBar;

namespace sendrel {

// The ruler's layout is stated in twips; the screen shows 15 twips in a pixel.
inline constexpr double kTwipsPerPixel = 15.0;
int TwipsToPixels(double twips);

// One class panel of the ruler (SSPanel2_<i>). It keeps its place in twips, as the ruler's
// arithmetic wants it, and reports its mouse events with X in twips relative to itself.
class ClassPanel : public QLabel {
    Q_OBJECT
public:
    ClassPanel(int index, QWidget *parent);

    int Index() const { return m_index; }
    double Left() const { return m_left; }
    double Width() const { return m_width; }
    // Places the panel: left edge and width in twips, caption.
    void Place(double left, double width, const QString &caption);
    // Text colour of the caption: black, or the colour of the class being edited.
    void SetTextColour(QColor colour);
    QColor TextColour() const { return m_colour; }

signals:
    // button: 1 left, 2 right, 4 middle, 0 none, as the ruler counts them.
    void Pressed(int index, double X, int button);
    void Moved(int index, double X, int button);
    void Released(int index, double X, int button);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    // The caption in the largest font from 8 points down to 6 that fits the panel; a caption
    // that fits in none is cut at its end with an ellipsis, never on both sides, so that a
    // narrow panel never shows a number that isn't its own.
    void paintEvent(QPaintEvent *event) override;

private:
    double twipsX(const QMouseEvent *event) const;

    int m_index;
    double m_left = 0;
    double m_width = 0;
    QColor m_colour = Qt::black;
};

// The panel "DBH Classes" (SSPanel1): a row of class panels over a scale in centimetres, in
// DrawArea, which the scroll bar hsScrollDBH moves inside the visible ViewArea. It only draws;
// the window owns the classes and the ruler's arithmetic and answers the panels' mouse events.
class ClassRulerView : public QGroupBox {
    Q_OBJECT
public:
    static constexpr int kPanels = 30;
    static constexpr int kTicks = 11;

    // The ruler's arithmetic (owned by the window) gives the widths and the scroll range.
    explicit ClassRulerView(const ClassRuler &ruler, QWidget *parent = nullptr);

    ClassPanel *SSPanel2(int index) const { return m_panels[index]; }
    QWidget *ViewArea() const { return m_viewArea; }
    QWidget *DrawArea() const { return m_drawArea; }
    QScrollBar *hsScrollDBH() const { return m_scroll; }
    QLabel *lblDBHScale(int index) const { return m_scaleLabels[index]; }
    QFrame *lneScaleTick(int index) const { return m_ticks[index]; }
    QFrame *lneScale() const { return m_scaleLine; }

    // Width of the visible part, in twips.
    double ViewAreaWidth() const;
    // DrawArea.Width from the ruler's length; the scroll bar follows: enabled, with its
    // maximum, when the ruler is longer than the view.
    void UpdateDrawArea();
    // The base line from left to right and the ticks with their labels, in twips.
    void PlaceScale(double left, const std::array<ClassRuler::Tick, 11> &ticks);
    // Hides every panel.
    void HideAllPanels();

    // Pixel rows of the ruler inside DrawArea.
    static constexpr int kPanelTop = 2;
    static constexpr int kPanelHeight = 26;
    static constexpr int kScaleTop = kPanelTop + kPanelHeight + 6;
    static constexpr int kTickHeight = 6;
    static constexpr int kLabelTop = kScaleTop + kTickHeight + 1;
    static constexpr int kDrawHeight = kLabelTop + 18;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void updateScrollBar();

    QWidget *m_viewArea;
    QWidget *m_drawArea;
    QScrollBar *m_scroll;
    QFrame *m_scaleLine;
    const ClassRuler &m_ruler;
    std::array<ClassPanel *, kPanels> m_panels{};
    std::array<QFrame *, kTicks> m_ticks{};
    std::array<QLabel *, kTicks> m_scaleLabels{};
};

}  // namespace sendrel
