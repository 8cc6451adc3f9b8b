/* What the hardware is: panel and light, as the board says. */

#ifndef BOARDCONF_H
#define BOARDCONF_H

#ifdef __cplusplus
extern "C" {
#endif

/* 0 on a grey panel. Any thread. */
int device_display_colormask(void);
/* Dots per inch of the panel. Any thread. */
unsigned device_display_dpi(void);
/* Number of the hardware platform. Any thread. */
int device_platform(void);

/* Automatic brightness and colour of the light: not 0 while on. Main thread. */
int hw_is_frontlight_auto(void);
int hw_is_frontlight_color_auto(void);
void hw_set_frontlight_auto_enabled(int on);
void hw_set_frontlight_color_auto_enabled(int on);

#ifdef __cplusplus
}
#endif

#endif
