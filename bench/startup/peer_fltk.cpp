// The page in a bare window, by FLTK: peer_fltk SHEET.bmp
#include "picture.h"

#include <FL/Fl.H>
#include <FL/Fl_BMP_Image.H>
#include <FL/Fl_Window.H>
#include <FL/fl_draw.H>

namespace {

class Page : public Fl_Window {
public:
    Page(Fl_Image& sheet) : Fl_Window(kPageLeft, kPageTop, kPageWidth, kPageHeight), sheet_(sheet) { border(0); }
    void draw() override { sheet_.draw(0, 0, kPageWidth, kPageHeight); }

private:
    Fl_Image& sheet_;
};

} // namespace

int main(int, char** argv)
{
    Fl_BMP_Image sheet(argv[1]);
    Page page(sheet);
    page.end();
    page.show();
    return Fl::run();
}
