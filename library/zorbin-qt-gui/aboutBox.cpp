#include "aboutBox.h"

#include <QCoreApplication>
#include <QFile>
#include <QMessageBox>
#include <QPointer>
#include <QTextStream>

namespace zorbin_qt_gui {

struct aboutBoxPrivate_t
{
    QPointer<QWidget> m_parent;
    QString m_copyrightYears;
    QString m_additionalText;
};

aboutBox_t::aboutBox_t(QWidget* parent) : m_d(std::make_unique<aboutBoxPrivate_t>())
{
    m_d->m_parent = parent;
}

aboutBox_t::~aboutBox_t() = default;

void aboutBox_t::copyrightYears(const QString& years)
{
    m_d->m_copyrightYears = years;
}

void aboutBox_t::addText(const QString& text)
{
    m_d->m_additionalText += text;
}

QString aboutBox_t::aboutText()
{
    const QString name = QCoreApplication::applicationName();
    const QString version = QCoreApplication::applicationVersion();
    const QString organization = QCoreApplication::organizationName();
    QFile file(QStringLiteral(":/zorbin-qt-gui-defaultAboutBoxText.html"));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        // GCOVR_EXCL_START The resource is a part of this library: no test can take it away.
        return name + QLatin1Char('\n') + version + QLatin1Char('\n') +
               QLatin1String("Copyright ") + m_d->m_copyrightYears + QLatin1Char(' ') +
               organization;
    // GCOVR_EXCL_STOP
    QString text = QTextStream(&file).readAll();
    // Deliberate: the years take the place of the blank before them, too.
    text.replace(QLatin1String(" __COPYRIGHT_YEARS__"), m_d->m_copyrightYears);
    text.replace(QLatin1String("__APPLICATION_NAME__"), name);
    text.replace(QLatin1String("__APPLICATION_VERSION__"), version);
    text.replace(QLatin1String("__ORGANIZATION_NAME__"), organization);
    text.replace(QLatin1String("__ORGANIZATION_DOMAIN__"), QCoreApplication::organizationDomain());
    return text;
}

void aboutBox_t::showAboutBox()
{
    QMessageBox::about(m_d->m_parent, QLatin1String("About ") + QCoreApplication::applicationName(),
                       aboutText() + m_d->m_additionalText);
}
} // namespace zorbin_qt_gui
