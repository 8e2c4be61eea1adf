// Lines and rectangle outlines with the selected pen. A line is stepped along its longer axis;
// only the steps that can touch the visible part are visited, so far coordinates cost nothing.
#include "platform/draw/dc.h"

#include <algorithm>
#include <cstdlib>

using talvor::platform::PixelFromColor;

namespace {

struct DashPattern {
    int count;
    int lengths[6]; // on, off, on, off, ... in pixels
    int total;
};

// The framework's cosmetic pen styles.
const DashPattern* PatternOf(int style) {
    static const DashPattern dash{2, {18, 6}, 24};
    static const DashPattern dot{2, {3, 3}, 6};
    static const DashPattern dashDot{4, {9, 6, 3, 6}, 24};
    static const DashPattern dashDotDot{6, {9, 3, 3, 3, 3, 3}, 24};
    switch (style) {
    case PS_DASH:
        return &dash;
    case PS_DOT:
        return &dot;
    case PS_DASHDOT:
        return &dashDot;
    case PS_DASHDOTDOT:
        return &dashDotDot;
    default:
        return nullptr;
    }
}

bool IsOn(const DashPattern& pattern, long long position) {
    int at = static_cast<int>(position % pattern.total);
    for (int i = 0; i < pattern.count; ++i) {
        if (at < pattern.lengths[i])
            return i % 2 == 0;
        at -= pattern.lengths[i];
    }
    return false;
}

// Coordinate of step i of n along a delta, rounded to the nearest pixel (halves away from the
// start): monotonic in i, which lets the visible steps be found by bisection.
long long StepCoordinate(long long start, long long delta, long long i, long long n) {
    // 128 bits: steps and deltas both reach 2^32 when far coordinates come in.
    const __int128 twice = static_cast<__int128>(2 * i) * std::llabs(delta) + n;
    const long long offset = static_cast<long long>(twice / (2 * n));
    return delta >= 0 ? start + offset : start - offset;
}

// First step in [0, n) whose coordinate is within [low, high), or n; the coordinates are
// monotonic, so the visible steps form one interval.
void VisibleSteps(long long start, long long delta, long long n, long long low, long long high,
                  long long& first, long long& last) {
    auto inside = [&](long long i) {
        const long long c = StepCoordinate(start, delta, i, n);
        return c >= low && c < high;
    };
    auto before = [&](long long i) { // step i lies before the interval along the direction
        const long long c = StepCoordinate(start, delta, i, n);
        return delta >= 0 ? c < low : c >= high;
    };
    long long lo = 0, hi = n; // first step not before
    while (lo < hi) {
        const long long mid = lo + (hi - lo) / 2;
        if (before(mid))
            lo = mid + 1;
        else
            hi = mid;
    }
    first = lo;
    hi = n; // first step past the interval
    while (lo < hi) {
        const long long mid = lo + (hi - lo) / 2;
        if (inside(mid) || before(mid))
            lo = mid + 1;
        else
            hi = mid;
    }
    last = lo;
}

} // namespace

void CDC::PlotDevice(int x, int y, COLORREF color, const CRect& bounds) {
    const int width = m_state.penState.width;
    const std::uint32_t pixel = PixelFromColor(color);
    talvor::platform::Raster& raster = *m_state.raster;
    const int from = -(width - 1) / 2;
    for (int dy = from; dy < from + width; ++dy) {
        const int py = y + dy;
        if (py < bounds.top || py >= bounds.bottom)
            continue;
        for (int dx = from; dx < from + width; ++dx) {
            const int px = x + dx;
            if (px >= bounds.left && px < bounds.right)
                raster.pixels[static_cast<std::size_t>(py) * raster.width + px] = pixel;
        }
    }
}

void CDC::StrokeLine(CPoint from, CPoint to) {
    const PenState& pen = m_state.penState;
    const long long x0 = static_cast<long long>(from.x) + m_state.origin.x;
    const long long y0 = static_cast<long long>(from.y) + m_state.origin.y;
    const long long dx = static_cast<long long>(to.x) - from.x;
    const long long dy = static_cast<long long>(to.y) - from.y;
    const long long n = std::max(std::llabs(dx), std::llabs(dy));
    const long long startPattern = m_state.patternPos;
    m_state.patternPos = static_cast<int>((startPattern + n) % 24); // 24: every pattern's period
    const CRect bounds = DeviceBounds();
    if (n == 0 || pen.style == PS_NULL || bounds.IsRectEmpty())
        return;

    const DashPattern* pattern = pen.width > 1 ? nullptr : PatternOf(pen.style);
    const int reach = pen.width; // a wide pen's square reaches this far around a step
    long long firstX, lastX, firstY, lastY;
    VisibleSteps(x0, dx, n, bounds.left - reach, bounds.right + reach, firstX, lastX);
    VisibleSteps(y0, dy, n, bounds.top - reach, bounds.bottom + reach, firstY, lastY);
    const long long first = std::max(firstX, firstY);
    const long long last = std::min(lastX, lastY);
    for (long long i = first; i < last; ++i) {
        const int x = static_cast<int>(StepCoordinate(x0, dx, i, n));
        const int y = static_cast<int>(StepCoordinate(y0, dy, i, n));
        if (!pattern || IsOn(*pattern, startPattern + i))
            PlotDevice(x, y, pen.color, bounds);
        else if (m_state.bkMode == OPAQUE)
            PlotDevice(x, y, m_state.bkColor, bounds);
    }
}

CPoint CDC::MoveTo(int x, int y) {
    const CPoint previous = m_state.position;
    m_state.position = CPoint(x, y);
    m_state.patternPos = 0;
    return previous;
}

BOOL CDC::LineTo(int x, int y) {
    const CPoint from = m_state.position;
    m_state.position = CPoint(x, y);
    if (m_state.raster)
        StrokeLine(from, m_state.position);
    return TRUE;
}

BOOL CDC::Rectangle(int left, int top, int right, int bottom) {
    CRect r(left, top, right, bottom);
    r.NormalizeRect();
    if (r.IsRectEmpty())
        return TRUE;
    const bool outline = m_state.penState.style != PS_NULL;
    if (!m_state.brushState.hollow) {
        CRect inside = outline ? CRect(r.left + 1, r.top + 1, r.right - 1, r.bottom - 1)
                               : CRect(r.left, r.top, r.right - 1, r.bottom - 1);
        FillDevice(ToDevice(inside), m_state.brushState.color);
    }
    if (!outline)
        return TRUE;
    const int savedPattern = m_state.patternPos;
    m_state.patternPos = 0;
    const CPoint corners[] = {CPoint(r.left, r.top), CPoint(r.right - 1, r.top),
                              CPoint(r.right - 1, r.bottom - 1), CPoint(r.left, r.bottom - 1)};
    if (r.Width() == 1 || r.Height() == 1) { // a line: the outline meets itself
        const CRect line = ToDevice(CRect(r.left, r.top, r.right, r.bottom));
        FillDevice(line, m_state.penState.color);
    } else {
        for (int i = 0; i < 4; ++i)
            StrokeLine(corners[i], corners[(i + 1) % 4]);
    }
    m_state.patternPos = savedPattern;
    return TRUE;
}

BOOL CDC::Rectangle(LPCRECT rect) {
    return rect ? Rectangle(rect->left, rect->top, rect->right, rect->bottom) : FALSE;
}
