// The page in a bare window, by Qt 5: peer_qt SHEET.bmp
#include "picture.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QWidget>

namespace {

class Page : public QWidget {
public:
    explicit Page(const QImage& sheet) : sheet_(sheet) {}

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).drawImage(0, 0, sheet_, 0, 0, kPageWidth, kPageHeight); }

private:
    const QImage& sheet_;
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QImage sheet(argv[1]);
    Page page(sheet);
    page.setWindowFlags(Qt::FramelessWindowHint);
    page.setGeometry(kPageLeft, kPageTop, kPageWidth, kPageHeight);
    page.show();
    return application.exec();
}
