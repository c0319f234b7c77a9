#pragma once
#include "zorbinQtGuiExport.h"

#include <QObject>
#include <memory>

namespace zorbin_qt_gui {
struct baseWaterfallModelPrivate_t;

/// Counts the items of a waterfall (pings, scans, spectra) and announces what arrives and goes. An
/// application derives from it the model that holds its items; the library never sees them.
///
/// Items have absolute indices, which only grow: those held are begin() up to, but without, end().
/// Each change is announced by one signal, after it. GUI thread only.
class ZORBIN_QT_GUI_EXPORT baseWaterfallModel_t : public QObject
{
    Q_OBJECT

public:
    /// Makes a model without items; the first one will have index 0.
    explicit baseWaterfallModel_t(QObject* parent = nullptr);
    ~baseWaterfallModel_t() override;

    /// How many items are held.
    unsigned int itemCount() const;
    int begin() const; ///< The index of the oldest item held.
    int end() const;   ///< One past the index of the newest item held.

    /// For subclasses: discards the oldest item and calls _dropItem(). Returns whether there was
    /// one. This one does nothing and returns false.
    virtual bool dropItem();

    /// For subclasses: starts anew with \p count items from index \p begin on, as far as an int can
    /// count them. Emits modelReset(); a view stays at its position.
    void reset(int begin, unsigned int count);
    /// For subclasses, after storing a new item: it gets the index end(). Emits itemAdded(). At the
    /// greatest int nothing happens; reset() to lower indices before that.
    void _addItem();
    /// For subclasses, after discarding the oldest item. Emits itemDropped(). Without items nothing
    /// happens.
    void _dropItem();

Q_SIGNALS:
    void itemAdded();   ///< An item has arrived; it is the newest one.
    void itemDropped(); ///< The oldest item has gone.
    void modelReset();  ///< All items were exchanged.

private:
    const std::unique_ptr<baseWaterfallModelPrivate_t> m_d;
};
} // namespace zorbin_qt_gui
