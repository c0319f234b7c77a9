#pragma once
#include "ruler.h"

namespace survey_console {

/// A horizontal ruler for times: "00:03:25" in UTC at round seconds, minutes or hours. Values are
/// seconds since 1970-01-01 00:00:00 UTC; one outside the years 1970 to 9999 has no label.
class timeRuler_t : public zorbin_qt_gui::ruler_t
{
    Q_OBJECT
public:
    explicit timeRuler_t(QWidget* parent = nullptr);

    /// The time of day, with a blank on either side that keeps labels apart.
    std::string textFromValue(double value) const override;

public Q_SLOTS:
    /// Points the arrow at \p time_; NaN removes it.
    void point(double time_);
};

} // namespace survey_console
