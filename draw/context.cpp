// The drawing context: its life, the view, rotation, paper scale.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "draw/device.h"
#include "draw/numbers.h"
#include "draw/state.h"
#include "draw/stroke/view.h"
#include "draw/texts.h"
#include "zenromath/config.h"
#include "zenromath/draw.h"
#include "zenromath/runtime.h"

using zm::Truncated;
using zm::draw::state;

namespace {

constexpr double kStartScale = 1000.0;  // pixels per survey unit
constexpr double kStartTextWidth = 0.78;
constexpr int kStartFontHeight = 4;
constexpr double kActive = 0.0001;  // degrees and metres; a rotation below it in all three values is none
constexpr double kLeastPaperScale = 1e-6;
constexpr double kStartPaperScale = 1000.0;

double TenthsPerUnit() {
    return 1000.0 / state().paperScale * 10.0;
}

// Survey positions of the upper right (1) and the lower left (2) pixel of a view.
struct ViewCorners {
    ViewCorners(const CTqDraw& dc, int width, int height) {
        dc.GetSurveyPos(x1, y1, width, 0);
        dc.GetSurveyPos(x2, y2, 0, height);
    }
    double x1 = 0.0, y1 = 0.0, x2 = 0.0, y2 = 0.0;
};

}  // namespace

CTqDraw::CTqDraw(int type)
    : CCutArea(0),
      m_type(type),
      m_drawable(0),
      m_hdc(nullptr),
      m_scale(kStartScale),
      m_originX(0.0),
      m_originY(0.0),
      m_viewHeight(0),
      m_viewWidth(0),
      m_flip(0),
      m_rotateActive(0),
      m_needRotate(0),
      m_rotateAngleRM(0.0),
      m_rotateX(0.0),
      m_rotateY(0.0),
      m_textHeight(1.0),
      m_textWidth(kStartTextWidth),
      m_textAngle(0.0),
      m_textSin(0.0),
      m_textCos(1.0),
      m_fontHeight(kStartFontHeight),
      m_fontWidth(0),
      m_fontEscapement(0),
      m_textOffsetX(0.0),
      m_textOffsetY(0.0) {
    zm::draw::AddContext(this);
    if (TqDC == nullptr)
        TqDC = this;
    else
        _LMsg(zm::draw::texts::kRedefined, nullptr, 0);
}

// Required: TqDC stays on the destroyed context until somebody replaces it, so the next CTqDraw shows its message.
CTqDraw::~CTqDraw() {
    m_commands.RemoveAll();
    zm::draw::ForgetContext(this);
    DeleteCengCi8Dlg();
}

CTqDraw* SelectWorkingTqDC(CTqDraw* dc) {
    return std::exchange(TqDC, dc);
}

int CTqDraw::SetTqDCType(int type) {
    return std::exchange(m_type, type);
}
int CTqDraw::GetTqDCType() const {
    return m_type;
}
CStringArray* CTqDraw::GetTqDCString() {
    return &m_commands;
}

void CTqDraw::SetViewDrawDC(HDC hdc, double scale, double x0, double y0, int width, int height, int flip) {
    m_hdc = hdc;
    m_scale = scale;
    m_originX = x0;
    m_originY = y0;
    m_viewHeight = height;
    m_viewWidth = width;
    m_flip = flip;
    m_drawable = 1;
}

void CTqDraw::ResetHdc(HDC hdc) {
    m_hdc = hdc;
}
HDC CTqDraw::GetHdc() const {
    return m_hdc;
}
int CTqDraw::Drawable() const {
    return m_drawable;
}

int CTqDraw::GetViewPos(double x, double y, int& px, int& py) const {
    const zm::draw::Pixel pixel = zm::draw::PixelOf(*this, x, y);
    px = pixel.x;
    py = pixel.y;
    return px >= 0 && px <= m_viewWidth && py >= 0 && py <= m_viewHeight ? 1 : 0;
}

void CTqDraw::GetSurveyPos(double& x, double& y, int px, int py) const {
    const double right = m_flip == 0 ? px : static_cast<double>(m_viewWidth) - px;
    const double up = m_flip == 0 ? static_cast<double>(m_viewHeight) - py : py;
    x = right / m_scale + m_originX;
    y = up / m_scale + m_originY;
}

void CTqDraw::GetViewArea(double& xmin, double& ymin, double& xmax, double& ymax) const {
    const ViewCorners corners(*this, m_viewWidth, m_viewHeight);
    xmin = std::min(corners.x1, corners.x2);
    ymin = std::min(corners.y1, corners.y2);
    xmax = std::max(corners.x1, corners.x2);
    ymax = std::max(corners.y1, corners.y2);
}

double CTqDraw::GetPixelsByRealen(double len) const {
    return len * m_scale;
}
double CTqDraw::GetRealenByPixels(double px) const {
    return px / m_scale;
}

int CTqDraw::ToIntPoints(int n, double* xy, CArray<CPoint, CPoint&>* pts) const {
    if (n < 2 || xy == nullptr || pts == nullptr) return 0;
    pts->RemoveAll();
    pts->SetSize(0, n);
    for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i) {
        double x = xy[2 * i];
        double y = xy[2 * i + 1];
        GetRMCoord(x, y);
        int px = 0;
        int py = 0;
        GetViewPos(x, y, px, py);
        CPoint point(px, py);
        pts->Add(point);
    }
    return static_cast<int>(pts->GetSize());
}

void CTqDraw::SetRotateMoveP(double angle, double cx, double cy) {
    m_rotateAngleRM = angle;
    m_rotateX = cx;
    m_rotateY = cy;
    m_rotateActive = std::fabs(angle) >= kActive || std::fabs(cx) >= kActive || std::fabs(cy) >= kActive ? 1 : 0;
}

int CTqDraw::GetRotateMoveP(double& angle, double& cx, double& cy) const {
    angle = m_rotateAngleRM;
    cx = m_rotateX;
    cy = m_rotateY;
    return m_rotateActive;
}

int CTqDraw::IsRM() const {
    return m_rotateActive;
}

void CTqDraw::GetRMCoord(double& x, double& y) const {
    if (m_rotateActive == 0) return;
    const zm::geometry::Pair rotated = zm::draw::Rotation(*this).Of(zm::geometry::Pair{x, y});
    x = rotated[0];
    y = rotated[1];
}

void CTqDraw::SetNeedRotate(int need) {
    m_needRotate = need;
}
int CTqDraw::IsNeedRotate() const {
    return m_needRotate;
}

void CTqDraw::SetCutArea(int n, double* x, double* y) {
    setcutarea(n, x, y);
}
void CTqDraw::SetCutArea(double x1, double y1, double x2, double y2) {
    setcutarea(x1, y1, x2, y2);
}

void CTqDraw::SetCutArea() {
    const ViewCorners corners(*this, m_viewWidth, m_viewHeight);
    setcutarea(corners.x2, corners.y1, corners.x1, corners.y2);
}

void CTqDraw::GetCutArea(double& left, double& top, double& right, double& bottom) const {
    getcutarea(left, top, right, bottom);
}

int CTqDraw::GetDoCut() const {
    return get_docut();
}
int CTqDraw::SetDoCut(int docut) {
    return set_docut(docut);
}
double CTqDraw::GetRotateAngle() const {
    return getrotateangle();
}

double setgscale(double scale) {
    return std::exchange(state().paperScale, scale);
}

double getcurgscale() {
    if (state().paperScale < kLeastPaperScale) state().paperScale = kStartPaperScale;
    return state().paperScale;
}

// Required: both read the stored scale as it is; the repair in getcurgscale does not reach them.
double _To01mm(int n) {
    return n / TenthsPerUnit();
}
int _For01mm(double len) {
    return Truncated(TenthsPerUnit() * len);
}

double SetInitRotateAngle(double angle) {
    return std::exchange(state().initialAngle, angle);
}
int _SetHdcCharHLimit(int limit) {
    return std::exchange(state().charHeightLimit, limit);
}
