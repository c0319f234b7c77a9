#include "latLonEditor.h"

#include "coordinateText_p.h"
#include "qtCompat_p.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPalette>
#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <clocale>
#include <cstdio>
#include <functional>
#include <optional>
#include <utility>
#include <zorbin/latLonParser.h>
#include <zorbin/latLonPrinter.h>

namespace zorbin_qt_gui {
namespace {

using printer_t = zorbin::latLonPrinter_t;

// What a notation needs. All texts are Latin-1; the degree sign is the byte 0xB0.
struct settingsEntry_t
{
    const char* latRegEx;
    const char* lonRegEx;
    const char* inputParser; // for sscanf
    const char* latMask;
    const char* lonMask;
    unsigned precision; // decimals of the last field
};

// A text of Qt's own, which Qt translates. Kept apart from tr(), so that lupdate doesn't take it
// for one of this library.
constexpr char QT_PASTE_TEXT[] = "&Paste";

// By notation. Deliberate: the points of the patterns match any character.
constexpr settingsEntry_t entryTable[] = {
    {"\\d\\d.\\d\\d\\d\\d\\d\\d\\d\\d\xB0", "\\d\\d\\d.\\d\\d\\d\\d\\d\\d\\d\\d\xB0", "%lf\xB0",
     "99.99999999\xB0", "999.99999999\xB0", 8},
    {"\\d\\d\xB0 \\d\\d.\\d\\d\\d\\d\\d\\d'", "\\d\\d\\d\xB0 \\d\\d.\\d\\d\\d\\d\\d\\d'",
     "%d\xB0 %lf'", "99\xB0 99.999999'", "999\xB0 99.999999'", 6},
    {"\\d\\d\xB0 \\d\\d' \\d\\d.\\d\\d\\d\\d\"", "\\d\\d\\d\xB0 \\d\\d' \\d\\d.\\d\\d\\d\\d\"",
     "%d\xB0 %lf' %lf\"", "99\xB0 99' 99.9999\"", "999\xB0 99' 99.9999\"", 4}};

constexpr const char* cfLabel[] = {"DD\xB0", "DD\xB0MM'", "DD\xB0MM'SS\""};

// Combo boxes tell -1 where nothing is chosen, and may have been given other items.
bool isNotation(int index)
{
    return index >= latLonEditor_t::CF_D && index <= latLonEditor_t::CF_DMS;
}

QString fromBytes(const char* text)
{
    return QString::fromLatin1(text);
}

// While it lives, the C library reads numbers with a point and single-byte text on this thread,
// whatever the user's language.
class cLocale_t
{
public:
    cLocale_t() : m_locale(newlocale(LC_ALL_MASK, "C", nullptr)), m_before(uselocale(m_locale)) {}
    ~cLocale_t()
    {
        uselocale(m_before);
        freelocale(m_locale);
    }
    cLocale_t(const cLocale_t&) = delete;
    cLocale_t& operator=(const cLocale_t&) = delete;

private:
    const locale_t m_locale;
    const locale_t m_before;
};

// Checks a text against the pattern, and what can be told of its fields against their limits.
class coordValidator_t : public patternValidator_t
{
public:
    coordValidator_t(latLonEditor_t::coordFormat_t format, QObject* parent, double maxDegrees,
                     double tooManyDegrees)
        : patternValidator_t(parent), m_format(format), m_mask(entryTable[format].inputParser),
          m_maxDegrees(maxDegrees), m_tooManyDegrees(tooManyDegrees)
    {
    }

    State validate(QString& input, int& pos) const override
    {
        if (patternValidator_t::validate(input, pos) == Invalid)
            return Invalid;
        double degrees = 0.0;
        double minutes = 0.0;
        double seconds = 0.0;
        readFields(input.toLatin1(), degrees, minutes, seconds);
        if (seconds >= 60.0 || minutes >= 60.0 || degrees >= m_tooManyDegrees)
            return Invalid;
        // Deliberate: a second counts as a 360th of a degree here. It matters only at the limit,
        // where the parser has the last word.
        const double total = degrees + minutes / 60.0 + seconds / 360.0;
        return degrees > m_maxDegrees || total > m_maxDegrees ? Intermediate : Acceptable;
    }

private:
    // Fields that aren't typed yet stay as they are. Deliberate: so do the degrees wherever they
    // are whole numbers, which therefore aren't checked.
    void readFields(const QByteArray& text, double& degrees, double& minutes, double& seconds) const
    {
        const cLocale_t locale;
        int wholeDegrees = 0;
        switch (m_format) {
        case latLonEditor_t::CF_D:
            std::sscanf(text.constData(), m_mask, &degrees);
            break;
        case latLonEditor_t::CF_DM:
            std::sscanf(text.constData(), m_mask, &wholeDegrees, &minutes);
            break;
        case latLonEditor_t::CF_DMS:
            std::sscanf(text.constData(), m_mask, &wholeDegrees, &minutes, &seconds);
            break;
        }
    }

    const latLonEditor_t::coordFormat_t m_format;
    const char* const m_mask;
    const double m_maxDegrees;
    const double m_tooManyDegrees;
};

class latValidator_t : public coordValidator_t
{
public:
    latValidator_t(latLonEditor_t::coordFormat_t format, QObject* parent)
        : coordValidator_t(format, parent, 90.0, 100.0)
    {
    }
};

class lonValidator_t : public coordValidator_t
{
public:
    lonValidator_t(latLonEditor_t::coordFormat_t format, QObject* parent)
        : coordValidator_t(format, parent, 180.0, 200.0)
    {
    }
};

// A field over whose digits one types. What is pasted or dropped is shown as a whole or not at all,
// since its digits alone might make another position.
class coordLineEdit_t : public QLineEdit
{
public:
    // Shows a text if it is a coordinate for the editor, and returns whether it is. The flag says
    // that the whole field is to be replaced.
    using taker_t = std::function<bool(const QString& text, bool isWhole)>;
    // Tells that a text is refused.
    using refuser_t = std::function<void(const QString& text)>;

    coordLineEdit_t(taker_t taker, refuser_t refuser, QWidget* parent)
        : QLineEdit(parent), m_taker(std::move(taker)), m_refuser(std::move(refuser)),
          m_flash(new QTimer(this))
    {
        m_flash->setSingleShot(true);
        m_flash->setTimerType(Qt::PreciseTimer);
        m_flash->setInterval(200);
        connect(m_flash, &QTimer::timeout, this, &coordLineEdit_t::putBaseBack);
        connect(this, &QLineEdit::inputRejected, this, [this] { m_isRejected = true; });
    }

    // To be called before validity changes, too, which applications show by the base: theirs is
    // then set, and saved, without the flash.
    void endFlash()
    {
        if (!m_flash->isActive())
            return;
        m_flash->stop();
        putBaseBack();
    }

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        if (event->matches(QKeySequence::Paste) && !isReadOnly()) {
            // One of the keys for it on X11.
            const bool isOfSelection =
                event->key() == Qt::Key_Insert &&
                event->modifiers() == (Qt::ControlModifier | Qt::ShiftModifier);
            put(textOf(isOfSelection ? QClipboard::Selection : QClipboard::Clipboard));
            return;
        }
        const bool isText = !event->text().isEmpty() && event->text().at(0).isDigit();
        if (isText && !isReadOnly())
            leaveSelection();
        QLineEdit::keyPressEvent(event);
    }

    void mouseReleaseEvent(QMouseEvent* event) override
    {
        if (event->button() == Qt::MiddleButton && !isReadOnly())
            put(textOf(QClipboard::Selection));
        else
            QLineEdit::mouseReleaseEvent(event);
    }

    void dropEvent(QDropEvent* event) override
    {
        if (event->source() == this || isReadOnly()) {
            QLineEdit::dropEvent(event);
            return;
        }
        if (put(event->mimeData()->text(), cursorPositionAt(pointerPos(event))))
            event->acceptProposedAction();
        else
            event->ignore();
    }

    void contextMenuEvent(QContextMenuEvent* event) override
    {
        QMenu* const menu = createStandardContextMenu();
        menu->setAttribute(Qt::WA_DeleteOnClose);
        const QList<QAction*> actions = menu->actions();
        for (QAction* const action : actions) {
            if (!action->text().startsWith(QLineEdit::tr(QT_PASTE_TEXT)))
                continue;
            action->disconnect(SIGNAL(triggered(bool)));
            connect(action, &QAction::triggered, this,
                    [this] { put(textOf(QClipboard::Clipboard)); });
        }
        menu->popup(event->globalPos());
    }

private:
    static QString textOf(QClipboard::Mode mode) { return QApplication::clipboard()->text(mode); }

    // Without what is selected the text would be no coordinate: digits replace it one by one.
    void leaveSelection()
    {
        if (hasSelectedText())
            setCursorPosition(selectionStart());
    }

    // Shows a text as a coordinate, or as if it were typed at a place, where the cursor is if it is
    // left out. Returns whether the text was taken. Slots may delete the editor, but not this.
    bool put(const QString& text, std::optional<int> place = std::nullopt)
    {
        const QString trimmed = text.trimmed();
        if (trimmed.isEmpty() || isReadOnly())
            return false;
        if (m_taker(trimmed, selectedText() == displayText()))
            return true;
        if (isTypable(trimmed)) {
            leaveSelection();
            if (place)
                setCursorPosition(*place);
            m_isRejected = false;
            insert(trimmed);
            if (!m_isRejected)
                return true;
        }
        m_refuser(text);
        startFlash();
        return false;
    }

    // Whether it consists of digits and of the mask's own signs.
    bool isTypable(const QString& text) const
    {
        const QString mask = inputMask();
        return std::all_of(text.begin(), text.end(),
                           [&mask](QChar c) { return c.isDigit() || mask.contains(c); });
    }

    void startFlash()
    {
        endFlash();
        m_calm = palette();
        QPalette flashing = m_calm;
        for (const QPalette::ColorGroup group : colorGroups)
            flashing.setBrush(group, QPalette::Base, m_calm.brush(group, QPalette::Highlight));
        setPalette(flashing);
        m_flash->start();
    }

    // The base that the field had before the flash, or has been given since. What wasn't set by
    // anybody goes on following the parent and the application.
    void putBaseBack()
    {
        const QPalette now = palette();
        QPalette restored;
        for (const QPalette::ColorGroup group : colorGroups) {
            for (int i = 0; i < QPalette::NColorRoles; ++i) {
                const auto role = static_cast<QPalette::ColorRole>(i);
                const bool isFlash =
                    role == QPalette::Base &&
                    now.brush(group, role) == m_calm.brush(group, QPalette::Highlight);
                const QPalette& source = isFlash ? m_calm : now;
                if (source.isBrushSet(group, role))
                    restored.setBrush(group, role, source.brush(group, role));
            }
        }
        setPalette(restored);
    }

    static constexpr QPalette::ColorGroup colorGroups[] = {QPalette::Active, QPalette::Inactive,
                                                           QPalette::Disabled};

    const taker_t m_taker;
    const refuser_t m_refuser;
    QTimer* const m_flash;     // runs as long as the base is highlighted
    QPalette m_calm;           // before the flash
    bool m_isRejected = false; // what was inserted last, by mask or validator
};

// Lives while signals are sent, whose slots may delete the sender: it counts those that are being
// sent, and knows whether the sender is still there.
class announcement_t
{
public:
    announcement_t(const QObject* sender, int& count) : m_sender(sender), m_count(count)
    {
        ++m_count;
    }
    ~announcement_t()
    {
        if (isSenderThere())
            --m_count;
    }
    announcement_t(const announcement_t&) = delete;
    announcement_t& operator=(const announcement_t&) = delete;

    bool isSenderThere() const { return !m_sender.isNull(); }

private:
    const QPointer<const QObject> m_sender;
    int& m_count; // the sender's
};

// For the end of a parent that is deleted while it announces what a child has signalled. Qt goes on
// using the child then, so the child is left to the event loop.
void leaveToEventLoop(QWidget* child)
{
    child->setParent(nullptr); // which hides it
    child->deleteLater();
}

QHBoxLayout* tightLayout(QWidget* widget)
{
    auto* const layout = new QHBoxLayout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    return layout;
}

} // namespace

struct latLonEditor_t::privateData_t
{
    privateData_t(latLonMode_t mode_, latLonEditor_t* editor)
        : mode(mode_), lineEdit(new coordLineEdit_t(
                           [this, editor](const QString& text, bool isWhole) {
                               return takeCoordinate(text, isWhole, editor);
                           },
                           [this, guard = QPointer<latLonEditor_t>(editor)](const QString& text) {
                               if (guard.isNull()) // a slot has deleted it
                                   return;
                               const announcement_t announcement(guard, announcements);
                               Q_EMIT guard->pasteRefused(text);
                           },
                           editor)),
          hemiCB(new QComboBox(editor)), formatSelector(new coordFormatSelector_t(editor))
    {
    }

    // Shows a coordinate from elsewhere, and the other one of a pair in the partner. A number alone
    // is one if it is to replace everything; without hemisphere a magnitude keeps that which is
    // shown.
    bool takeCoordinate(const QString& text, bool isWhole, latLonEditor_t* editor) const
    {
        const auto coordinate = isLatitude() ? readLatitude(text) : readLongitude(text);
        if (!coordinate || (coordinate->isPlainMagnitude && !isWhole))
            return false;
        const bool isNegative = !coordinate->hasHemisphere && hemiCB->currentIndex() == 1;
        const bool isForBoth = coordinate->isOfPair && partner != nullptr && partner->isEnabled() &&
                               !partner->m_d->lineEdit->isReadOnly();
        if (!isForBoth) {
            editor->setValue(isNegative ? -coordinate->value : coordinate->value);
            return true;
        }
        const auto otherOne = isLatitude() ? readLongitude(text) : readLatitude(text);
        const QPointer<latLonEditor_t> other(partner); // slots of the first may delete it
        editor->setValue(coordinate->value);
        if (!other.isNull())
            other->setValue(otherOne->value);
        return true;
    }

    bool isLatitude() const { return mode == LLM_LATITUDE; }

    const latLonMode_t mode;
    zorbin::latLonParser_t llParser;
    zorbin::latLonPrinter_t llPrinter;
    coordLineEdit_t* const lineEdit;
    QComboBox* const hemiCB;
    coordFormatSelector_t* const formatSelector;
    std::unique_ptr<patternValidator_t> validator;
    bool isValid = true;   // as reported last
    int announcements = 0; // being made
    coordFormat_t editorFormat = CF_D;
    latLonEditor_t* partner = nullptr; // whose partner this one is
};

latLonEditor_t::latLonEditor_t(latLonMode_t mode, QWidget* parent)
    : QWidget(parent), m_d(std::make_unique<privateData_t>(mode, this))
{
    auto* const layout = tightLayout(this);
    layout->addWidget(m_d->lineEdit);
    layout->addWidget(m_d->hemiCB);
    layout->addWidget(m_d->formatSelector);
    m_d->lineEdit->setSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::Fixed);
    m_d->lineEdit->setAlignment(Qt::AlignRight);
    m_d->formatSelector->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_d->formatSelector->hide();
    m_d->hemiCB->setMinimumContentsLength(2);
    m_d->hemiCB->addItems(m_d->isLatitude()
                              ? QStringList{QStringLiteral("N"), QStringLiteral("S")}
                              : QStringList{QStringLiteral("E"), QStringLiteral("W")});
    initialize();
    setValue(0.0);

    // From here on changes are announced.
    connect(m_d->lineEdit, &QLineEdit::textChanged, this, &latLonEditor_t::handleValueChanged);
    connect(m_d->hemiCB, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &latLonEditor_t::handleValueChanged);
    connect(m_d->formatSelector, &coordFormatSelector_t::selectionChanged, this,
            &latLonEditor_t::setCoordinateFormat);
}

latLonEditor_t::~latLonEditor_t()
{
    pairWith(nullptr);
    m_d->lineEdit->setValidator(nullptr);
    if (m_d->announcements == 0)
        return;
    leaveToEventLoop(m_d->lineEdit);
    leaveToEventLoop(m_d->hemiCB);
}

bool latLonEditor_t::value(double& v) const
{
    const std::string text =
        (m_d->lineEdit->text() + m_d->hemiCB->currentText()).toLatin1().toStdString();
    const int result = m_d->isLatitude() ? m_d->llParser.parseLatitude(text, v)
                                         : m_d->llParser.parseLongitude(text, v);
    return result != -1;
}

latLonEditor_t::coordFormat_t latLonEditor_t::selectedFormat() const
{
    return m_d->editorFormat;
}

void latLonEditor_t::connectFormatSelector(coordFormatSelector_t* other, bool bothWays)
{
    if (other == nullptr) // disconnect() would take it for anyone
        return;
    coordFormatSelector_t* const own = m_d->formatSelector;
    connect(other, &coordFormatSelector_t::selectionChanged, own,
            &coordFormatSelector_t::changeSelection, Qt::UniqueConnection);
    if (bothWays)
        connect(own, &coordFormatSelector_t::selectionChanged, other,
                &coordFormatSelector_t::changeSelection, Qt::UniqueConnection);
    else
        disconnect(own, nullptr, other, nullptr);
}

void latLonEditor_t::pairWith(latLonEditor_t* other)
{
    if (other != nullptr && other->m_d->isLatitude() == m_d->isLatitude()) {
        qDebug("latLonEditor_t::%s: Failed to pair - two %s are no position", "pairWith",
               m_d->isLatitude() ? "latitudes" : "longitudes");
        return;
    }
    for (latLonEditor_t* const editor : {this, other})
        if (editor != nullptr && editor->m_d->partner != nullptr)
            std::exchange(editor->m_d->partner, nullptr)->m_d->partner = nullptr;
    m_d->partner = other;
    if (other != nullptr)
        other->m_d->partner = this;
}

void latLonEditor_t::setCoordinateFormat(latLonEditor_t::coordFormat_t format_)
{
    double v = 0.0;
    if (format_ == m_d->editorFormat || !isNotation(format_) || !value(v))
        return;
    m_d->editorFormat = format_;
    const QPointer<latLonEditor_t> self(this);
    initialize();
    if (!self.isNull())
        setValue(v);
}

void latLonEditor_t::showFormatSelector(bool show_)
{
    m_d->formatSelector->setVisible(show_);
}

void latLonEditor_t::setValue(double value_)
{
    const std::string printed = m_d->isLatitude() ? m_d->llPrinter.printLatitude(value_)
                                                  : m_d->llPrinter.printLongitude(value_);
    const QString text = QString::fromLatin1(printed.data(), static_cast<int>(printed.size()));
    const QPointer<latLonEditor_t> self(this);
    m_d->hemiCB->setCurrentIndex(m_d->hemiCB->findData(
        text.right(1), Qt::DisplayRole, Qt::MatchFixedString | Qt::MatchCaseSensitive));
    if (!self.isNull())
        m_d->lineEdit->setText(text.chopped(1));
}

void latLonEditor_t::handleValueChanged()
{
    double v = 0.0;
    const bool isValid = value(v);
    const announcement_t announcement(this, m_d->announcements);
    if (isValid != m_d->isValid) {
        m_d->isValid = isValid;
        m_d->lineEdit->endFlash();
        Q_EMIT valueValidityChanged(isValid);
    }
    if (isValid && announcement.isSenderThere())
        Q_EMIT valueChanged(v);
}

// For callers by name, with the index of any combo box; nothing here is connected to it.
void latLonEditor_t::handleFormatCBChanged(int index_)
{
    if (isNotation(index_))
        setCoordinateFormat(static_cast<coordFormat_t>(index_));
}

// Sets the field up for the notation.
void latLonEditor_t::initialize()
{
    const QPointer<latLonEditor_t> self(this);
    const settingsEntry_t& entry = entryTable[m_d->editorFormat];
    m_d->lineEdit->setValidator(nullptr);
    m_d->formatSelector->changeSelection(m_d->editorFormat);
    if (self.isNull())
        return;
    m_d->llPrinter.coordFormat(static_cast<printer_t::coordFormat_t>(m_d->editorFormat));
    m_d->llPrinter.hemisphereFormat(printer_t::HF_CHAR_SUFFIX);
    m_d->llPrinter.separatorFormat(printer_t::SF_MARK_SPACE);
    m_d->llPrinter.precision(entry.precision);
    if (m_d->isLatitude())
        m_d->validator = std::make_unique<latValidator_t>(m_d->editorFormat, nullptr);
    else
        m_d->validator = std::make_unique<lonValidator_t>(m_d->editorFormat, nullptr);
    setPattern(*m_d->validator, fromBytes(m_d->isLatitude() ? entry.latRegEx : entry.lonRegEx));
    m_d->lineEdit->setInputMask(fromBytes(m_d->isLatitude() ? entry.latMask : entry.lonMask));
    if (!self.isNull())
        m_d->lineEdit->setValidator(m_d->validator.get());
}

latitudeEditor_t::latitudeEditor_t(QWidget* parent) : latLonEditor_t(LLM_LATITUDE, parent)
{
}

longitudeEditor_t::longitudeEditor_t(QWidget* parent) : latLonEditor_t(LLM_LONGITUDE, parent)
{
}

struct coordFormatSelector_t::privateData_t
{
    QComboBox* comboBox;
    int announcements; // being made
};

coordFormatSelector_t::coordFormatSelector_t(QWidget* parent)
    : QWidget(parent), m_d(new privateData_t{new QComboBox(this), 0})
{
    tightLayout(this)->addWidget(m_d->comboBox);
    for (const char* const label : cfLabel)
        m_d->comboBox->addItem(fromBytes(label));
    m_d->comboBox->setCurrentIndex(latLonEditor_t::CF_DM);
    connect(m_d->comboBox, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &coordFormatSelector_t::handleCurrentIndexChanged);
}

coordFormatSelector_t::~coordFormatSelector_t()
{
    if (m_d->announcements > 0)
        leaveToEventLoop(m_d->comboBox);
}

void coordFormatSelector_t::changeSelection(latLonEditor_t::coordFormat_t format_)
{
    if (format_ == m_d->comboBox->currentIndex() || !isNotation(format_))
        return;
    // A box that has lost its items shows nothing that it is told: without this, two such selectors
    // that follow each other would go on for ever.
    if (m_d->announcements > 0 && format_ >= m_d->comboBox->count())
        return;
    const announcement_t announcement(this, m_d->announcements);
    m_d->comboBox->setCurrentIndex(format_);
    // Deliberate: announced a second time, after the combo box has done so.
    if (announcement.isSenderThere())
        Q_EMIT selectionChanged(format_);
}

void coordFormatSelector_t::handleCurrentIndexChanged(int index_)
{
    const announcement_t announcement(this, m_d->announcements);
    if (isNotation(index_))
        Q_EMIT selectionChanged(static_cast<latLonEditor_t::coordFormat_t>(index_));
}
} // namespace zorbin_qt_gui
