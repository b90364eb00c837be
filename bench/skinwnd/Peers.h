// The same pictures by other means. Each draws pieces into pixels of its own, and the caption's text when it is asked.
#pragma once

#include <memory>

#include "GallerySkin.h"

namespace bench {

class Peer {
public:
    explicit Peer(const CSize& size)
        : m_size(size), m_pixels(static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy))
    {}
    virtual ~Peer() = default;
    // Called once before the pieces are drawn again and again.
    virtual void Take(const std::vector<Piece>& pieces, bool bHasText) = 0;
    virtual void Draw() = 0;
    const std::vector<std::uint32_t>& Pixels() const { return m_pixels; }

protected:
    const CSize m_size;
    std::vector<std::uint32_t> m_pixels;
};

// Copies rows of the pixels that show; draws no text.
std::unique_ptr<Peer> MakeMemcpy(const CSize& size);
std::unique_ptr<Peer> MakeQt(const CSize& size);
std::unique_ptr<Peer> MakeCairo(const CSize& size);

} // namespace bench
