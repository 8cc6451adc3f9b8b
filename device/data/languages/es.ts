<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es">
<context>
    <name>device</name>
    <message>
        <source>@1min</source>
        <translation>1&#xa0;minuto</translation>
    </message>
    <message>
        <source>@2min</source>
        <translation>2&#xa0;minutos</translation>
    </message>
    <message>
        <source>@5min</source>
        <translation>5&#xa0;minutos</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningBottomLeft</source>
        <translation>Abajo a la izquierda</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningBottomRight</source>
        <translation>Abajo a la derecha</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningTopLeft</source>
        <translation>Arriba a la izquierda</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningTopRight</source>
        <translation>Arriba a la derecha</translation>
    </message>
    <message>
        <source>@AddPhotos</source>
        <translation>Añadir fotos</translation>
    </message>
    <message>
        <source>@AddPhotosToPlaylist</source>
        <translation>Añadir fotos a la lista</translation>
    </message>
    <message>
        <source>@All</source>
        <translation>Todas</translation>
    </message>
    <message>
        <source>@AutomaticBrightness</source>
        <translation>Brillo automático</translation>
    </message>
    <message>
        <source>@AutomaticColorTemperature</source>
        <translation>Color automático</translation>
    </message>
    <message>
        <source>@AvailableDiskSpace</source>
        <translation>%s libres&#xa;de %s</translation>
    </message>
    <message>
        <source>@Back</source>
        <extracomment>Leaves a playlist; read aloud</extracomment>
        <translation>Atrás</translation>
    </message>
    <message>
        <source>@Bold</source>
        <translation>Negrita</translation>
    </message>
    <message>
        <source>@BoldItalic</source>
        <translation>Negrita cursiva</translation>
    </message>
    <message>
        <source>@Brightness</source>
        <translation>Brillo</translation>
    </message>
    <message>
        <source>@Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>@ChangePictureEvery</source>
        <translation>Duración por foto</translation>
    </message>
    <message>
        <source>@Close</source>
        <translation>Cerrar</translation>
    </message>
    <message>
        <source>@ColorTemperature</source>
        <translation>Color de la luz</translation>
    </message>
    <message>
        <source>@Continue</source>
        <translation>Continuar</translation>
    </message>
    <message>
        <source>@CreatePlaylist</source>
        <translation>Crear lista</translation>
    </message>
    <message>
        <source>@CurrentDateTime</source>
        <translation>Fecha y hora actuales</translation>
    </message>
    <message>
        <source>@CustomTime</source>
        <translation>Otra</translation>
    </message>
    <message>
        <source>@CustomizeFontAndPositioning</source>
        <translation>Fuente y posición</translation>
    </message>
    <message>
        <source>@DefaultPlaylist</source>
        <translation>Fotos</translation>
    </message>
    <message>
        <source>@Delete</source>
        <translation>Eliminar</translation>
    </message>
    <message>
        <source>@DeviceWontTurnOffUntilYouStopPlayback</source>
        <translation>El dispositivo no se apaga hasta detener la presentación</translation>
    </message>
    <message>
        <source>@DisplayMode</source>
        <translation>Visualización</translation>
    </message>
    <message>
        <source>@FillScreen</source>
        <translation>Llenar la pantalla</translation>
    </message>
    <message>
        <source>@FitToScreenOnBlack</source>
        <translation>Sobre fondo negro</translation>
    </message>
    <message>
        <source>@FlashDir</source>
        <translation>Dispositivo</translation>
    </message>
    <message>
        <source>@Font</source>
        <translation>Fuente</translation>
    </message>
    <message>
        <source>@FrontLight</source>
        <translation>Luz frontal</translation>
    </message>
    <message numerus="yes">
        <source>@Hour</source>
        <translation>
            <numerusform>hora</numerusform>
            <numerusform>horas</numerusform>
        </translation>
    </message>
    <message>
        <source>@Hours</source>
        <translation>horas</translation>
    </message>
    <message>
        <source>@Italic</source>
        <translation>Cursiva</translation>
    </message>
    <message>
        <source>@KA_menu</source>
        <translation>Menú</translation>
    </message>
    <message>
        <source>@KA_next</source>
        <translation>Foto siguiente</translation>
    </message>
    <message>
        <source>@KA_prev</source>
        <translation>Foto anterior</translation>
    </message>
    <message>
        <source>@KeyDone</source>
        <translation>Listo</translation>
    </message>
    <message>
        <source>@KeyLanguage</source>
        <translation>Idioma</translation>
    </message>
    <message>
        <source>@KeyShift</source>
        <translation>Mayúsculas</translation>
    </message>
    <message>
        <source>@KeySpace</source>
        <translation>Espacio</translation>
    </message>
    <message numerus="yes">
        <source>@Minute</source>
        <translation>
            <numerusform>minuto</numerusform>
            <numerusform>minutos</numerusform>
        </translation>
    </message>
    <message>
        <source>@MonthOfDay</source>
        <translation>de %1</translation>
    </message>
    <message>
        <source>@New_playlist</source>
        <translation>Nueva lista</translation>
    </message>
    <message>
        <source>@NextPage</source>
        <translation>Página siguiente</translation>
    </message>
    <message>
        <source>@NoteThatEnablingFrontlightLeadsToFasterBatteryDraining</source>
        <translation>La luz frontal agota antes la batería</translation>
    </message>
    <message>
        <source>@OK</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>@OTG</source>
        <translation>Disco USB</translation>
    </message>
    <message>
        <source>@PhotoCreatedDate</source>
        <translation>Fecha de la foto</translation>
    </message>
    <message>
        <source>@PhotoWasAddedToPlaylist</source>
        <translation>%s foto añadida a «%s»</translation>
    </message>
    <message numerus="yes">
        <source>@PhotosWereAddedToPlaylist</source>
        <translation>
            <numerusform>%s foto añadida a «%s»</numerusform>
            <numerusform>%s fotos añadidas a «%s»</numerusform>
        </translation>
    </message>
    <message>
        <source>@PlayItem</source>
        <translation>Reproducir</translation>
    </message>
    <message>
        <source>@Position</source>
        <translation>Posición</translation>
    </message>
    <message>
        <source>@PreviousPage</source>
        <translation>Página anterior</translation>
    </message>
    <message>
        <source>@Regular</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>@Rename</source>
        <translation>Cambiar nombre</translation>
    </message>
    <message>
        <source>@SDcard</source>
        <translation>Tarjeta SD</translation>
    </message>
    <message>
        <source>@Save</source>
        <translation>Guardar</translation>
    </message>
    <message numerus="yes">
        <source>@Second</source>
        <translation>
            <numerusform>segundo</numerusform>
            <numerusform>segundos</numerusform>
        </translation>
    </message>
    <message>
        <source>@Second_2</source>
        <translation>segundos</translation>
    </message>
    <message>
        <source>@SelectBooks</source>
        <translation>Elegir fotos</translation>
    </message>
    <message>
        <source>@SelectMultiple</source>
        <translation>Seleccionar varias</translation>
    </message>
    <message>
        <source>@SetCustomInterval</source>
        <translation>Definir duración</translation>
    </message>
    <message>
        <source>@ShowAsGrid</source>
        <extracomment>Shows the pictures of a playlist as a grid; read aloud</extracomment>
        <translation>Mostrar como cuadrícula</translation>
    </message>
    <message>
        <source>@ShowAsList</source>
        <extracomment>Shows the pictures of a playlist as a list; read aloud</extracomment>
        <translation>Mostrar como lista</translation>
    </message>
    <message>
        <source>@ShowPhotoCreatedDate</source>
        <translation>Mostrar fecha de la foto</translation>
    </message>
    <message>
        <source>@Show_panel_time</source>
        <translation>Mostrar fecha y hora</translation>
    </message>
    <message>
        <source>@Shuffle</source>
        <translation>Orden aleatorio</translation>
    </message>
    <message>
        <source>@Size_B</source>
        <translation>B</translation>
    </message>
    <message>
        <source>@Size_GB</source>
        <translation>GB</translation>
    </message>
    <message>
        <source>@Size_KB</source>
        <translation>KB</translation>
    </message>
    <message>
        <source>@Size_MB</source>
        <translation>MB</translation>
    </message>
    <message>
        <source>@Size_TB</source>
        <translation>TB</translation>
    </message>
    <message>
        <source>@SlideshowSettings</source>
        <translation>Ajustes de presentación</translation>
    </message>
    <message>
        <source>@StartPlayback</source>
        <translation>Iniciar presentación</translation>
    </message>
    <message>
        <source>@StopSlideshow</source>
        <translation>Detener presentación</translation>
    </message>
    <message>
        <source>@Storages</source>
        <translation>Almacenamiento</translation>
    </message>
    <message>
        <source>@Style</source>
        <translation>Estilo</translation>
    </message>
    <message>
        <source>@ThereAreNoPicturesYet</source>
        <translation>Aún no hay fotos. Toca + para añadir alguna.</translation>
    </message>
    <message>
        <source>@ThereAreNoPlaylistsYet</source>
        <translation>Aún no hay listas. Toca «Nueva lista» para crear una.</translation>
    </message>
    <message>
        <source>@WhenPlaybackIsActiveTheDeviceWillNotAutomaticallyBeTurnedOff</source>
        <translation>Mientras se muestran fotos, no se apaga automáticamente</translation>
    </message>
    <message>
        <source>@picture_stand</source>
        <translation>Marco de fotos</translation>
    </message>
</context>
</TS>
