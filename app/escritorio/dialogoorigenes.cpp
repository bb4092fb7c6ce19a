#include "dialogoorigenes.h"

#include "lugares/ruta.h"

#include <QDialogButtonBox>
#include <QFileSystemModel>
#include <QListView>
#include <QPushButton>

#include <algorithm>

DialogoOrigenes::DialogoOrigenes(QWidget *padre)
    : QFileDialog(padre, QStringLiteral("Elegir archivos y carpetas")) {
    setOption(QFileDialog::DontUseNativeDialog);
    setFileMode(QFileDialog::ExistingFiles);
    setLabelText(QFileDialog::Accept, QStringLiteral("Elegir"));
    siguelaSeleccion();
}

// Qt leaves its button disabled while only folders are marked, and promises to
// open the folder with it.
void DialogoOrigenes::siguelaSeleccion() {
    const auto *lista = findChild<QListView *>(QStringLiteral("listView"));
    const auto *botones = findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
    if (lista == nullptr || botones == nullptr)
        return;
    connect(
        lista->selectionModel(), &QItemSelectionModel::selectionChanged, this,
        [this, botones] {
            if (marcados().isEmpty())
                return;
            setLabelText(QFileDialog::Accept, QStringLiteral("Elegir"));
            botones->button(QDialogButtonBox::Open)->setEnabled(true);
        },
        Qt::QueuedConnection);
}

QList<QUrl> DialogoOrigenes::marcados() const {
    const auto *lista = findChild<QListView *>(QStringLiteral("listView"));
    QModelIndexList filas =
        lista != nullptr ? lista->selectionModel()->selectedRows() : QModelIndexList();
    std::sort(filas.begin(), filas.end());
    QList<QUrl> urls;
    for (const QModelIndex &fila : filas)
        urls.append(ruta::url(fila.data(QFileSystemModel::FilePathRole).toString()));
    return urls;
}

void DialogoOrigenes::accept() {
    m_elegidos = marcados();
    if (!m_elegidos.isEmpty()) {
        done(QDialog::Accepted);
        return;
    }
    QFileDialog::accept();
    if (result() == QDialog::Accepted)
        m_elegidos = selectedUrls();
}
