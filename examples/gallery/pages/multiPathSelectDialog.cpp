// Collects recordings from several directories. Go to line1 or line2 and add its files to the
// list; OK tells what was chosen. The survey is compiled into this program, hence the colon.

#include "pages.h"

#include <QLabel>
#include <QVBoxLayout>
#include <zorbin-qt-gui/multiPathSelectDialog.h>

using namespace zorbin_qt_gui;

namespace gallery {

QWidget* makeMultiPathSelectDialog()
{
    auto* const dialog = new mfsDialog_t({QStringLiteral("*.log")});
    dialog->setDirectory(QStringLiteral(":/survey/line1"));
    dialog->addAllClicked();
    dialog->setDirectory(QStringLiteral(":/survey/line2"));
    QListView* const candidates = dialog->ui()->candidatesListView;
    candidates->setCurrentIndex(candidates->model()->index(0, 0));

    // Applications run it with exec(); here it is a part of the page, and comes back once closed.
    auto* const page = new QWidget;
    auto* const result = new QLabel;
    result->hide();
    auto* const layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0); // the dialog has its own
    layout->addWidget(dialog);
    layout->addWidget(result);
    QObject::connect(dialog, &QDialog::finished, page, [dialog, result](int code) {
        result->setText(code == QDialog::Accepted
                            ? QStringLiteral("%1 files chosen").arg(dialog->numSelected())
                            : QStringLiteral("cancelled"));
        result->show();
        dialog->show();
    });
    return page;
}

} // namespace gallery
