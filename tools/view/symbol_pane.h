// A piece of paper with a symbol on it, in millimetres: rulers at its edges, a distance measured by the mouse.
#pragma once

#include <QImage>
#include <QString>
#include <QWidget>
#include <optional>

namespace zm::view {

class SymbolPane : public QWidget {
    Q_OBJECT
 public:
    /// \param sample  as the process knows it: "alone", "line", "area"
    SymbolPane(const QString& sample, const QString& caption, QWidget* owner = nullptr);

    const QString& sample() const { return m_sample; }
    void SetCaption(const QString& caption);
    /// Forgets what is shown; the next picture is as it fits.
    void Clear();
    /// The picture that is wanted: its middle in millimetres, y up, and pixels of the screen a millimetre; 0: as it fits.
    QPointF middle() const { return m_middle; }
    double perMillimetre() const { return m_fits ? 0.0 : m_perMillimetre; }
    /// Of the paper, device pixels.
    QSize pixels() const;
    /// Takes a picture with the middle and scale (of the screen) that it was drawn for; null: the symbol draws nothing.
    void Take(const QImage& picture, QPointF middle, double perMillimetre);
    bool isWhole() const { return m_whole; }
    void SetWaiting() { m_whole = false; }
    /// No other picture comes; the last good one stays.
    void KeepPicture() { m_whole = true; }

    /// Millimetres at a place of the widget, y up, and back.
    QPointF ToPaper(QPointF at) const;
    QPointF ToScreen(QPointF paper) const;
    /// The measured distance in millimetres.
    std::optional<double> measured() const;
    QSize minimumSizeHint() const override { return {120, 90}; }

 signals:
    /// Another picture is wanted.
    void Moved();

 protected:
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

 private:
    void ZoomAbout(QPointF at, double factor);
    void FitAgain();
    void DrawRulers(QPainter& painter) const;
    void DrawMeasured(QPainter& painter) const;
    QRect Paper() const;

    QString m_sample, m_caption;
    QPointF m_middle;
    double m_perMillimetre = 10.0;
    bool m_fits = true, m_whole = false, m_empty = false;
    QImage m_picture;
    QPointF m_pictureMiddle;
    double m_picturePerMillimetre = 1.0;
    std::optional<std::pair<QPointF, QPointF>> m_ruler;  // on paper
    QPointF m_grabbed;
};

}  // namespace zm::view
