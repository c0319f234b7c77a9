#include "paletteChooser.h"
#include "palette.h"
#include "paletteBox.h"
#include "texts.h"
#include "theme.h"

#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QPainter>
#include <QWheelEvent>

using zorbin_qt_gui::palette_t;

namespace survey_console {
namespace {

const int CHOICE_ROLE = Qt::UserRole;
const char ONE_COLOR[] = "plain";
const QSize ICON_SIZE(28, 12);
const QSize SWATCH_SIZE(96, 10);
const int NAME_WIDTH = 11; // of the palettes in the list, in widths of an X
const int SWATCH_GAP = 1;  // pixels between the swatch and the values below it

// Turning the wheel over it, on the way to something else, changes nothing.
class steadyBox_t : public QComboBox
{
protected:
    void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

} // namespace

// The palette chosen, below it the values of its ends. Empty without a palette.
class paletteSwatch_t : public QWidget
{
public:
    paletteSwatch_t(const valueRange_t& range, const QString& unit)
        : m_first(valueText(range.min, range.decimals)),
          m_last(valueText(range.max, range.decimals) + ' ' + unit)
    {
        QFont small = font();
        small.setPointSizeF(small.pointSizeF() * 0.8);
        setFont(small);
        setFixedSize(SWATCH_SIZE.width(),
                     SWATCH_SIZE.height() + SWATCH_GAP + fontMetrics().height());
        setToolTip(paletteChooser_t::tr("The colours from %1 to %2").arg(m_first, m_last));
    }

    void show(const palette_t* palette)
    {
        m_picture = palette ? swatch(*palette, SWATCH_SIZE) : QPixmap();
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        if (m_picture.isNull())
            return;
        QPainter painter(this);
        painter.drawPixmap(0, 0, m_picture);
        painter.setPen(theme::quietText());
        const QRect below = rect().adjusted(0, SWATCH_SIZE.height() + SWATCH_GAP, 0, 0);
        painter.drawText(below, Qt::AlignLeft, m_first);
        painter.drawText(below, Qt::AlignRight, m_last);
    }

private:
    const QString m_first;
    const QString m_last;
    QPixmap m_picture;
};

paletteChooser_t::paletteChooser_t(const valueRange_t& range, const QString& unit,
                                   const QColor& oneColor, QWidget* parent)
    : QWidget(parent), m_box(new steadyBox_t), m_swatch(new paletteSwatch_t(range, unit))
{
    m_box->setObjectName(QStringLiteral("paletteBox"));
    m_box->setToolTip(tr("How the curve is coloured: by value or in one colour"));
    m_box->setIconSize(ICON_SIZE);
    // Stays as wide as it is when a file joins the list.
    m_box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_box->setMinimumContentsLength(NAME_WIDTH);
    m_swatch->setObjectName(QStringLiteral("paletteSwatch"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(10);
    layout->addWidget(m_box);
    layout->addWidget(m_swatch);

    m_box->addItem(tr("From file\u2026"));
    addPalette(tr("One colour"), QString::fromLatin1(ONE_COLOR), nullptr);
    QStringList unreadable;
    for (const standardPalette_t& standard : standardPalettes()) {
        palette_t palette;
        if (palette.load(standard.which) && !palette.colorTable().empty())
            addPalette(paletteBox_t::tr(standard.name), QString::fromLatin1(standard.choice),
                       curvePalette(palette));
        else
            unreadable += paletteBox_t::tr(standard.name);
    }
    chooseOneColor(oneColor);
    if (m_palettes.size() == 1)
        setMessage(tr("No palettes found: one colour"));
    else if (!unreadable.isEmpty())
        setMessage(tr("Can't read palette %1").arg(unreadable.join(QStringLiteral(", "))));
    if (m_palettes.size() > 1)
        choose(1);
    connect(m_box, QOverload<int>::of(&QComboBox::activated), this, &paletteChooser_t::activate);
}

paletteChooser_t::~paletteChooser_t() = default;

const palette_t* paletteChooser_t::palette() const
{
    return m_palettes[static_cast<std::size_t>(m_chosen)].get();
}

QString paletteChooser_t::choice() const
{
    return m_box->itemData(m_chosen, CHOICE_ROLE).toString();
}

void paletteChooser_t::chooseAgain(const QString& choice)
{
    const int row = m_box->findData(choice, CHOICE_ROLE);
    if (row >= 0 && row != m_chosen)
        activate(row);
    else if (row < 0 && QFileInfo(choice).isAbsolute())
        chooseFile(choice);
}

void paletteChooser_t::chooseOneColor(const QColor& color)
{
    QPixmap icon(ICON_SIZE);
    icon.fill(color);
    m_box->setItemIcon(0, icon);
    choose(0);
}

void paletteChooser_t::chooseFile(const QString& path)
{
    const QFontMetrics metrics = m_box->fontMetrics();
    const QString name = metrics.elidedText(QFileInfo(path).fileName(), Qt::ElideMiddle,
                                            NAME_WIDTH * metrics.horizontalAdvance('X'));
    palette_t palette;
    if (!QFileInfo(path).isFile() || // a pipe would be waited for
        !palette.load(QFile::encodeName(path).toStdString()) || palette.colorTable().empty()) {
        setMessage(tr("Can't read palette %1").arg(name));
        return;
    }
    const QString absolute = QFileInfo(path).absoluteFilePath();
    const int row = addPalette(name, absolute, curvePalette(palette));
    m_box->setItemData(row, path, Qt::ToolTipRole);
    activate(row);
}

// Adds a row above the last and returns its number.
int paletteChooser_t::addPalette(const QString& name, const QString& choice,
                                 palettePointer_t palette)
{
    const int row = m_box->count() - 1;
    m_box->insertItem(row, palette ? QIcon(swatch(*palette, ICON_SIZE)) : QIcon(), name, choice);
    m_palettes.push_back(std::move(palette));
    return row;
}

void paletteChooser_t::activate(int row)
{
    const bool isFile = row == m_box->count() - 1;
    choose(isFile ? m_chosen : row);
    if (isFile) {
        openFileDialog();
        return;
    }
    setMessage(QString());
    Q_EMIT paletteChanged();
}

void paletteChooser_t::choose(int row)
{
    m_chosen = row;
    m_box->setCurrentIndex(row);
    m_swatch->show(palette());
}

// The replay goes on behind it.
void paletteChooser_t::openFileDialog()
{
    auto* dialog = new QFileDialog(this, tr("Palette"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setNameFilters({tr("Palettes (*.wp *.xml *.jsp)"), tr("All files (*)")});
    connect(dialog, &QFileDialog::fileSelected, this, &paletteChooser_t::chooseFile);
    dialog->open();
}

void paletteChooser_t::setMessage(const QString& message)
{
    if (message == m_message)
        return;
    m_message = message;
    Q_EMIT messageChanged();
}

} // namespace survey_console
