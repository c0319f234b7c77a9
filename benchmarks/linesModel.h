#pragma once
#include <deque>
#include <utility>
#include <vector>
#include <waterfallModel.h>

/// The newest lines of samples for a waterfall.
class linesModel_t : public zorbin_qt_gui::baseWaterfallModel_t
{
public:
    /// Makes a model without lines that holds at most \p kept of them.
    explicit linesModel_t(std::size_t kept) : m_kept(kept) {}

    /// Adds a line; the oldest one goes if there are too many.
    void add(std::vector<float> line)
    {
        m_lines.push_back(std::move(line));
        _addItem();
        if (m_lines.size() > m_kept)
            dropItem();
    }

    bool dropItem() override
    {
        if (m_lines.empty())
            return false;
        m_lines.pop_front();
        _dropItem();
        return true;
    }

    /// The line of an index that is held.
    const std::vector<float>& line(int index) const
    {
        return m_lines[static_cast<std::size_t>(index - begin())];
    }

private:
    const std::size_t m_kept;
    std::deque<std::vector<float>> m_lines;
};
