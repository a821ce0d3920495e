// A window that draws its own title bar, shadow and borders, as many desktop programs do.
#include <gtk/gtk.h>

int main(int argc, char** argv) {
    gtk_init(&argc, &argv);
    GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    GtkWidget* bar = gtk_header_bar_new();
    gtk_header_bar_set_title(GTK_HEADER_BAR(bar), "Header bar window");
    gtk_window_set_titlebar(GTK_WINDOW(window), bar);
    gtk_window_set_default_size(GTK_WINDOW(window), 420, 320);
    gtk_window_move(GTK_WINDOW(window), 300, 250);
    g_signal_connect(window, "destroy", G_CALLBACK(gtk_main_quit), nullptr);
    gtk_widget_show_all(window);
    gtk_main();
    return 0;
}
