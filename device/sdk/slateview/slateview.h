/* The device SDK, as applications see it: screen, events and timers, power, light, texts, pictures, log.
 *
 * Strings and formats are UTF-8. "Any thread" is said where it holds, all else is for the main thread.
 * Strings that are returned live for ever, except that a key without a text comes back as the caller's own
 * pointer. Only what EnumFontsEx returns is given back.
 *
 * Before the device has started (which the platform plug-in does while the application object is made)
 * setters do nothing and other calls give their neutral value: 0, null, the key itself; the size of the
 * screen and the height of its status panel are then those of the default profile. After the device has
 * stopped it is the same, but what any thread may call goes on as it was: a worker that outlives the device
 * never sees another screen or language.
 *
 * Null pointers, sizes and values out of range are harmless: such a call does nothing or gives its neutral
 * value. */

#ifndef SLATEVIEW_H
#define SLATEVIEW_H

#include <time.h>

#ifdef __cplusplus
extern "C" {
#endif

/* --- screen and panel
 * ------------------------------------------------------------------------------------------ */

/* Size of the screen in pixels as it is turned now, status panel included. Any thread. */
int ScreenWidth(void);
int ScreenHeight(void);

/* The status panel at the top of the screen: its height in pixels, also while it is hidden; its type, 0
 * hidden, 1 shown. */
int PanelHeight(void);
void SetPanelType(int type);
int GetPanelType(void);

/* How far the picture is turned clockwise on the glass: 0 is 0, 1 is 90, 2 is 270, 3 is 180 degrees. Setting
 * changes the sizes before it returns, the windows follow in the event loop. 3 is for devices that support
 * it. */
int GetOrientation(void);
void SetOrientation(int orientation);
int IsDeviceSupportUpSideDown(void);

/* Makes the whole panel white at once; windows come back with their next drawing or the next full refresh. */
void ClearScreen(void);

/* Not 0 while the screen shows black as white. Any thread. */
int SvGetScreenModeInversion(void);

/* --- events and timers
 * ----------------------------------------------------------------------------------------- */

/* Types of events and their first parameter; the second is 0:
 *   25  a key of the device: 23 menu, 24 previous, 25 next
 *   32  the device was turned: the new orientation
 *   40  a configurable key: its scan code
 *  151  the program comes to the front      152  it goes to the background
 *  161  SD card in       162  SD card out   163  USB storage in       164  USB storage out */
typedef int (*sv_event_handler)(int type, int par1, int par2);

/* A function that forwards to the application's event handler, null where none is installed. */
sv_event_handler GetEventHandler(void);

/* Calls `handler` before it returns, with its result; a null handler does nothing. */
int SendEvent(sv_event_handler handler, int type, int par1, int par2);

/* Named one-shot timers: `callback(context)` once after `milliseconds`, from the event loop, never from
 * inside this call. Arming a pending name replaces it; clearing a name that is not pending is harmless.
 * Negative delays are 0. */
typedef void (*sv_timer_callback)(void *context);
void SetHardTimerEx(const char *name, sv_timer_callback callback, void *context, int milliseconds);
void ClearTimerByName(const char *name);

/* --- power
 * ----------------------------------------------------------------------------------------------------- */

/* Puts off the device's going to sleep: its idle time starts anew. 0. */
int BanSleep(int count);
/* 0 switches the automatism off, any other value on. */
void SetAutoPowerOff(int on);
void SetAutoKeylock(int on);

/* --- light
 * ----------------------------------------------------------------------------------------------------- */

/* Levels from 0 to 100; others are clamped. */
int GetFrontlightState(void);
void SetFrontlightState(int level);
int GetFrontlightColor(void);
void SetFrontlightColor(int level);
void SetFrontlightEnabled(int on);

/* --- tasks and viewer
 * ------------------------------------------------------------------------------------------ */

/* Framebuffer of a task, owned by the SDK. */
typedef struct
{
    int width, height; /* pixels as turned */
    int orientation; /* as in SetOrientation */
} sv_framebuffer_info;

/* Identifier of the task that ran before, 0 where none is known, and of its subtask; each pointer may be
 * null. */
void GetPreviousTask(int *task, int *subtask);
/* Null where nothing is known of that task; else valid until the next call. */
const sv_framebuffer_info *GetTaskFramebufferInfo(int task);

/* Hands a file to the device's own viewer. `parameters` may be null. 1: taken. */
int OpenBook(const char *path, const char *parameters, int flags);

/* --- storages
 * -------------------------------------------------------------------------------------------------- */

/* Not 0 while a USB mass-storage device is in, at "/mnt/ext3". Any thread. */
int isUsbStorMounted(void);

/* --- texts
 * ----------------------------------------------------------------------------------------------------- */

/* Text of a key in the device language, or the key itself. Any thread. */
const char *GetLangText(const char *key);
/* The plural form for `count`, rounded to a whole number, less than 0 counting as 0. Any thread. */
const char *GetLangTextPlural(const char *key, double count);
/* `time` after a strftime-like format into `buffer` of `size` bytes, cut at size - 1 and always ended.
 * Conversions: a A b B d e H I j l m M p S y Y %; "%l" is the name of the month as it stands beside a day;
 * any other is copied. `flags` is 0. Any thread. */
void GetLangTime(char *buffer, int size, const char *format, const struct tm *time, int flags);

/* --- theme, fonts, customisation
 * ------------------------------------------------------------------------------- */

/* A number of the theme, `fallback` where the theme does not name it. Any thread. */
int GetThemeInt(const char *name, int fallback);
/* Family name of the device's font for a use; 5 is the interface's own. Null without a QGuiApplication. */
const char *sv_get_default_font(int use);
/* The faces of the fonts that can write the device language: four at most of each family, those of one family
 * beside each other, families in the order of the alphabet. The record whose family is null ends the array;
 * there is none before it without a QGuiApplication. The caller gives the array back. */
typedef struct
{
    const char *family;
    int style; /* 0 regular, 1 italic, 2 bold, 3 bold italic */
    const char *face; /* name of the face, such as "Noto Sans Bold" */
} sv_font;
sv_font *EnumFontsEx(void);
/* Gives back what EnumFontsEx returned, with all its names. */
void FreeFontsForSort(sv_font *fonts);
/* What this device was built for: kind of localisation, number of the partner. */
int GetSoftwareLocalizationType(void);
int GetCustomizedPartner(void);

/* --- configuration files
 * --------------------------------------------------------------------------------------- */

/* A configuration file as it is now; `mode` 0 and 1 both read it. Never null: a file that cannot be read is
 * empty. Works before the device has started. Closing drops it, nothing is ever written. */
typedef struct sv_config sv_config;
sv_config *sv_config_open(const char *path, int mode);
void sv_config_close(sv_config *config);
/* The value of a key; the fallback where it is missing or, for ReadInt, not wholly a decimal int. Strings
 * live until the configuration is closed. */
int ReadInt(sv_config *config, const char *key, int fallback);
const char *ReadString(sv_config *config, const char *key, const char *fallback);

/* --- pictures: any thread
 * -------------------------------------------------------------------------------------- */

/* All work in place on the rows of one picture: 8-bit grey on a grey panel, 3 bytes R, G, B a pixel on a
 * colour panel, by device_display_colormask(). Padding behind a row keeps its bytes. Null data or a size of 0
 * do nothing. */

/* The device's own tone adjustment, for thumbnails and for colour panels: contrast 1.05, then gamma 1.1,
 * which makes up for paper that is no bright white; black and white stay. Nothing on a panel whose levels
 * were measured: dithering makes up for all of it there. */
void adjustAreaDefault(unsigned char *data, int bytesPerLine, int width, int height);
/* The same with factors, each of which changes nothing at 1.0. A value v from 0 to 1 becomes v * brightness,
 * then (v - 1/2) * contrast + 1/2, then v to the power of 1 / gamma, limited to 0 .. 1 each time. Brightness
 * and contrast count from 0 to 100, gamma from 0.01 to 100; not-a-number counts as 1. */
void adjustAreaWithBrightnessContrastGamma(unsigned char *data, int bytesPerLine, int width, int height,
                                           double brightness, double contrast, double gamma);
/* Error diffusion of a rectangle of an 8-bit grey picture down to the panel's 16 greys, multiples of 17. What
 * lies to the left of or above the picture, or beyond its bytesPerLine, is cut off. In inverted mode the
 * picture is taken for one that came inverted and that the screen turns round again. */
void QuickFloyd16Dither(unsigned char *data, int bytesPerLine, int x, int y, int width, int height);

/* --- log
 * ------------------------------------------------------------------------------------------------------- */

/* One line to the device log, printf-like; control characters are shown as "\n", "\x1b". Any thread, also in
 * static destructors. */
#ifdef __GNUC__
__attribute__((format(printf, 5, 6)))
#endif
void lr_print_log2(int level, const char *file, int line, const char *function, const char *format, ...);

#ifdef __cplusplus
}
#endif

#endif
