// The map in the window: the picture that was drawn last, moved and scaled to where one looks now, and the hand of the
// mouse on it.
#pragma once

#include <QElapsedTimer>
#include <QImage>
#include <QPolygonF>
#include <QTimer>
#include <QWidget>
#include <optional>
#include <vector>

#include "tools/view/viewport.h"

namespace zm::view {

class WorkerLink;

/// What a click does.
enum class Tool { look, zoom, distance, area };

class MapView : public QWidget {
    Q_OBJECT
 public:
    explicit MapView(QWidget* owner = nullptr);

    /// Takes pictures from this worker from now on; the last picture of the old one stays until there is a new one.
    void SetLink(WorkerLink* link);
    /// What the worker says of a picture.
    void TakePainted(const QJsonObject& message);

    const Viewport& viewport() const { return m_view; }
    void Show(const Viewport& viewport);
    void Fit(const QRectF& box);
    /// The box that F shows.
    void SetWhole(const QRectF& box) { m_whole = box; }
    const QRectF& whole() const { return m_whole; }
    double scale() const;
    void SetScale(double scale);
    /// The scale that symbols are drawn for; 0: that of the view.
    void SetSymbolScale(double scale);
    double symbolScale() const { return m_symbolScale; }
    void Turn(double degrees);
    void Back();
    void Forward();
    void ZoomBy(double factor);
    /// Has the picture drawn anew, as after something was hidden.
    void Redraw();
    /// Of the picture that was asked for last.
    QSize askedPixels() const { return m_askedPixels; }
    quint32 askedNumber() const { return m_number; }
    /// False while a picture is waited for.
    bool isWhole() const { return m_drawn; }
    /// What is seen, as an image.
    QImage Seen() const;

    void SetTool(Tool tool);
    Tool tool() const { return m_tool; }
    const QPolygonF& measured() const { return m_measured; }
    void ClearMeasured();
    /// Replaces the last point that was measured, as a vertex near it.
    void SnapLast(QPointF plane);
    void SetHighlight(std::vector<QPolygonF> outline);
    void SetReadout(const QString& text);
    const QString& readout() const { return m_readout; }
    /// Where the mouse was last on the map; the middle of what is seen, as long as it was not there.
    QPointF cursor() const { return m_cursor.value_or(QPointF(m_view.x, m_view.y)); }

 signals:
    void CursorMoved(QPointF plane);
    void Clicked(QPointF plane, double reach);
    void Measured(bool added);
    void ViewChanged();
    void PictureChanged(bool whole);
    void Failed(const QString& why);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;
    bool event(QEvent* event) override;

 private:
    struct Picture {
        Viewport view;
        QImage image;  // device pixels; of the shared memory, or a copy
    };
    void Moved();
    void Request(int labels);
    void Remember();
    void PaintMeasured(QPainter& painter) const;
    void PaintBar(QPainter& painter) const;
    void ShowCursor();
    /// What the tool does at a place of the screen.
    void Click(QPointF at);

    WorkerLink* m_link = nullptr;
    Viewport m_view;
    QRectF m_whole;
    double m_symbolScale = 0.0;
    bool m_placed = false;  // a view was set

    std::optional<Picture> m_shown, m_overview;
    int m_front = 0;
    quint32 m_number = 0;
    Viewport m_asked;
    QSize m_askedPixels;
    double m_ratio = 0.0;  // device pixels of a pixel, of the picture that was asked for
    bool m_drawn = false;
    QTimer m_rest;   // until labels are asked for
    QTimer m_pause;  // until a view is remembered
    std::vector<Viewport> m_past;
    std::size_t m_now = 0;

    Tool m_tool = Tool::look;
    std::optional<QPointF> m_pressed, m_band;
    bool m_dragged = false;
    QPointF m_last;
    std::optional<QPointF> m_cursor;
    QPolygonF m_measured;
    std::vector<QPolygonF> m_highlight;
    QString m_readout;
};

}  // namespace zm::view
