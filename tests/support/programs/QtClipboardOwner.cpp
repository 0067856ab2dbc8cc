// SPDX-License-Identifier: MIT
// A Qt program that has copied something. Arguments: pairs of a MIME type and the file that holds
// its data; the type "image" copies the file as an image. Says "owned" when the clipboard has it.
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <QTimer>

#include <cstdio>

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    auto* data = new QMimeData;
    for (int i = 1; i + 1 < arguments.size(); i += 2) {
        if (arguments[i] == QStringLiteral("image")) {
            data->setImageData(QImage(arguments[i + 1]));
            continue;
        }
        QFile file(arguments[i + 1]);
        if (!file.open(QIODevice::ReadOnly))
            return 1;
        data->setData(arguments[i], file.readAll());
    }
    QTimer::singleShot(0, [data] {
        QGuiApplication::clipboard()->setMimeData(data);
        std::puts("owned");
        std::fflush(stdout);
    });
    return QGuiApplication::exec();
}
