// Tiles finds where the copies of a picture lie that fill a run of pixels along one axis: one after the other from the
// run's start. Only those that show are walked, so that a run far longer than the window costs no time.
#pragma once

#include <algorithm>
#include <cstdint>

namespace PelkGUI {

class Tiles {
public:
    // Fills [nStart, nStop) as far as it lies in [nClipStart, nClipStop). A picture without an extent fills nothing.
    Tiles(std::int64_t nStart, std::int64_t nStop, std::int64_t nExtent, std::int64_t nClipStart,
          std::int64_t nClipStop)
        : m_nFirst(nStart), m_nStop(nStop), m_nEnd(std::min(nStop, nClipStop)), m_nExtent(nExtent)
    {
        if (nExtent <= 0)
            m_nEnd = m_nFirst;
        else if (nStart < nClipStart)
            m_nFirst += (nClipStart - nStart) / nExtent * nExtent;
    }

    std::int64_t First() const { return m_nFirst; }
    std::int64_t End() const { return m_nEnd; }
    std::int64_t Count() const { return First() < End() ? (End() - First() - 1) / m_nExtent + 1 : 0; }
    // How far up to nMost whole copies reach from there; where none fits any more, what is left of the run.
    int Reach(std::int64_t nPosition, std::int64_t nMost) const
    {
        const std::int64_t nLeft = m_nStop - nPosition;
        return static_cast<int>(nLeft < m_nExtent ? nLeft : std::min(nMost, nLeft / m_nExtent) * m_nExtent);
    }

private:
    std::int64_t m_nFirst;
    std::int64_t m_nStop;
    std::int64_t m_nEnd;
    std::int64_t m_nExtent;
};

} // namespace PelkGUI
