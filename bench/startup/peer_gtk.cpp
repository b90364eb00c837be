// The page in a bare window, by GTK 3: peer_gtk SHEET.bmp
#include "picture.h"

#include <gtk/gtk.h>

namespace {

gboolean draw(GtkWidget*, cairo_t* context, gpointer sheet)
{
    gdk_cairo_set_source_pixbuf(context, static_cast<GdkPixbuf*>(sheet), 0, 0);
    cairo_paint(context);
    return TRUE;
}

} // namespace

int main(int argc, char** argv)
{
    gtk_init(&argc, &argv);
    GdkPixbuf* sheet = gdk_pixbuf_new_from_file(argv[1], nullptr);
    GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_decorated(GTK_WINDOW(window), FALSE);
    gtk_window_set_default_size(GTK_WINDOW(window), kPageWidth, kPageHeight);
    gtk_window_move(GTK_WINDOW(window), kPageLeft, kPageTop);
    gtk_widget_set_app_paintable(window, TRUE);
    g_signal_connect(window, "draw", G_CALLBACK(draw), sheet);
    gtk_widget_show(window);
    gtk_main();
}
