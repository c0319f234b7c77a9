#pragma once
#include "paintLog.h"
#include "plainWaterfall.h"
#include "testCase.h"
#include "waterfallView.h"

#include <QImage>
#include <QList>
#include <QSize>
#include <QString>
#include <QStringList>
#include <memory>
#include <utility>

/// What tests of waterfall views share: a view with a model and a renderer, and the pointer.
namespace waterfall_tests {
using zorbin_qt_gui::baseWaterfallView_t;

/// A typed view, as an application derives it.
class view_t : public baseWaterfallView_t
{
public:
    using baseWaterfallView_t::baseWaterfallView_t;

    countingModel_t* model() const override;
    patternRenderer_t* renderer() const override;
};

/// Everything that a view announces, in order, and whether the view was at it by then.
class viewLog_t
{
public:
    explicit viewLog_t(baseWaterfallView_t& view);

    QStringList take() { return std::exchange(m_texts, QStringList()); }
    bool isConsistent() const { return m_consistent; }

private:
    QStringList m_texts;
    bool m_consistent = true;
};

inline const QString nothingPointedAt = QStringLiteral("pointedItemChanged(-2147483648, nan)");

/// A view of a model and a renderer; the geometry is settled, nothing is logged yet.
struct waterfall_t
{
    explicit waterfall_t(const QSize& size, int items = 0,
                         Qt::Orientation orientation = Qt::Vertical);

    /// Shows the view and forgets what that did.
    bool show();

    /// What is to be seen: every pixel by itself.
    QImage wanted() const;

    countingModel_t model;
    patternRenderer_t renderer;
    view_t view;
    std::unique_ptr<viewLog_t> log;
    std::unique_ptr<paintLog_t> paints;
};

/// The indices from first down to last.
QList<int> downwards(int first, int last);

void movePointer(QWidget& widget, const QPoint& to);
void leave(QWidget& widget);

/// Keeps the pointer out of the way.
class waterfallTestCase_t : public testCase_t
{
protected:
    void setUp() override;
};
} // namespace waterfall_tests
