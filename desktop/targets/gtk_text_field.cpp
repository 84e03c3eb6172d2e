// gtk_text_field FILE TITLE: a window with a text field of several lines that records its text and every key
// press.

#include "record.h"

#include <gtk/gtk.h>

#include <cstdlib>

namespace {

using corvandi::targets::Record;

gboolean onKeyPress(GtkWidget*, GdkEvent* event, gpointer record)
{
    const bool withAlt = (event->key.state & GDK_MOD1_MASK) != 0;
    static_cast<Record*>(record)->key(event->key.keyval, withAlt ? Record::Alt::down : Record::Alt::up);
    return GDK_EVENT_PROPAGATE;
}

gboolean onFocusIn(GtkWidget*, GdkEvent*, gpointer record)
{
    static_cast<Record*>(record)->focus();
    return GDK_EVENT_PROPAGATE;
}

void onChanged(GtkTextBuffer* buffer, gpointer record)
{
    GtkTextIter start;
    GtkTextIter end;
    gtk_text_buffer_get_bounds(buffer, &start, &end);
    gchar* text = gtk_text_buffer_get_text(buffer, &start, &end, TRUE);
    static_cast<Record*>(record)->text(text);
    g_free(text);
}

GtkWidget* makeWindow(const char* title, Record& record)
{
    GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    GtkWidget* field = gtk_text_view_new();
    constexpr int width = 900;
    constexpr int height = 60;
    gtk_text_view_set_wrap_mode(GTK_TEXT_VIEW(field), GTK_WRAP_WORD_CHAR);
    gtk_window_set_title(GTK_WINDOW(window), title);
    gtk_window_set_default_size(GTK_WINDOW(window), width, height);
    gtk_container_add(GTK_CONTAINER(window), field);
    g_signal_connect(window, "key-press-event", G_CALLBACK(onKeyPress), &record);
    g_signal_connect(window, "destroy", G_CALLBACK(gtk_main_quit), nullptr);
    g_signal_connect(field, "focus-in-event", G_CALLBACK(onFocusIn), &record);
    g_signal_connect(gtk_text_view_get_buffer(GTK_TEXT_VIEW(field)), "changed", G_CALLBACK(onChanged),
                     &record);
    return window;
}

} // namespace

int main(int count, char** arguments)
{
    gtk_init(&count, &arguments);
    if (count != 3)
        return EXIT_FAILURE;
    Record record(arguments[1]);
    gtk_widget_show_all(makeWindow(arguments[2], record));
    record.ready();
    gtk_main();
    return EXIT_SUCCESS;
}
