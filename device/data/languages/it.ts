<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it">
<context>
    <name>device</name>
    <message>
        <source>@1min</source>
        <translation>1&#xa0;minuto</translation>
    </message>
    <message>
        <source>@2min</source>
        <translation>2&#xa0;minuti</translation>
    </message>
    <message>
        <source>@5min</source>
        <translation>5&#xa0;minuti</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningBottomLeft</source>
        <translation>In basso a sinistra</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningBottomRight</source>
        <translation>In basso a destra</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningTopLeft</source>
        <translation>In alto a sinistra</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningTopRight</source>
        <translation>In alto a destra</translation>
    </message>
    <message>
        <source>@AddPhotos</source>
        <translation>Aggiungi foto</translation>
    </message>
    <message>
        <source>@AddPhotosToPlaylist</source>
        <translation>Aggiungi foto alla playlist</translation>
    </message>
    <message>
        <source>@All</source>
        <translation>Tutte</translation>
    </message>
    <message>
        <source>@AutomaticBrightness</source>
        <translation>Luminosità automatica</translation>
    </message>
    <message>
        <source>@AutomaticColorTemperature</source>
        <translation>Colore automatico</translation>
    </message>
    <message>
        <source>@AvailableDiskSpace</source>
        <translation>%s liberi&#xa;su %s</translation>
    </message>
    <message>
        <source>@Back</source>
        <extracomment>Leaves a playlist; read aloud</extracomment>
        <translation>Indietro</translation>
    </message>
    <message>
        <source>@Bold</source>
        <translation>Grassetto</translation>
    </message>
    <message>
        <source>@BoldItalic</source>
        <translation>Grassetto corsivo</translation>
    </message>
    <message>
        <source>@Brightness</source>
        <translation>Luminosità</translation>
    </message>
    <message>
        <source>@Cancel</source>
        <translation>Annulla</translation>
    </message>
    <message>
        <source>@ChangePictureEvery</source>
        <translation>Durata per foto</translation>
    </message>
    <message>
        <source>@Close</source>
        <translation>Chiudi</translation>
    </message>
    <message>
        <source>@ColorTemperature</source>
        <translation>Colore della luce</translation>
    </message>
    <message>
        <source>@Continue</source>
        <translation>Continua</translation>
    </message>
    <message>
        <source>@CreatePlaylist</source>
        <translation>Crea playlist</translation>
    </message>
    <message>
        <source>@CurrentDateTime</source>
        <translation>Data e ora attuali</translation>
    </message>
    <message>
        <source>@CustomTime</source>
        <translation>Altra</translation>
    </message>
    <message>
        <source>@CustomizeFontAndPositioning</source>
        <translation>Carattere e posizione</translation>
    </message>
    <message>
        <source>@DefaultPlaylist</source>
        <translation>Foto</translation>
    </message>
    <message>
        <source>@Delete</source>
        <translation>Elimina</translation>
    </message>
    <message>
        <source>@DeviceWontTurnOffUntilYouStopPlayback</source>
        <translation>Il dispositivo resta acceso finché non fermi la presentazione</translation>
    </message>
    <message>
        <source>@DisplayMode</source>
        <translation>Visualizzazione</translation>
    </message>
    <message>
        <source>@FillScreen</source>
        <translation>Riempi lo schermo</translation>
    </message>
    <message>
        <source>@FitToScreenOnBlack</source>
        <translation>Su sfondo nero</translation>
    </message>
    <message>
        <source>@FlashDir</source>
        <translation>Dispositivo</translation>
    </message>
    <message>
        <source>@Font</source>
        <translation>Carattere</translation>
    </message>
    <message>
        <source>@FrontLight</source>
        <translation>Luce frontale</translation>
    </message>
    <message numerus="yes">
        <source>@Hour</source>
        <translation>
            <numerusform>ora</numerusform>
            <numerusform>ore</numerusform>
        </translation>
    </message>
    <message>
        <source>@Hours</source>
        <translation>ore</translation>
    </message>
    <message>
        <source>@Italic</source>
        <translation>Corsivo</translation>
    </message>
    <message>
        <source>@KA_menu</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>@KA_next</source>
        <translation>Foto successiva</translation>
    </message>
    <message>
        <source>@KA_prev</source>
        <translation>Foto precedente</translation>
    </message>
    <message>
        <source>@KeyDone</source>
        <translation>Fine</translation>
    </message>
    <message>
        <source>@KeyLanguage</source>
        <translation>Lingua</translation>
    </message>
    <message>
        <source>@KeyShift</source>
        <translation>Maiuscole</translation>
    </message>
    <message>
        <source>@KeySpace</source>
        <translation>Spazio</translation>
    </message>
    <message numerus="yes">
        <source>@Minute</source>
        <translation>
            <numerusform>minuto</numerusform>
            <numerusform>minuti</numerusform>
        </translation>
    </message>
    <message>
        <source>@MonthOfDay</source>
        <translation>%1</translation>
    </message>
    <message>
        <source>@New_playlist</source>
        <translation>Nuova playlist</translation>
    </message>
    <message>
        <source>@NextPage</source>
        <translation>Pagina successiva</translation>
    </message>
    <message>
        <source>@NoteThatEnablingFrontlightLeadsToFasterBatteryDraining</source>
        <translation>La luce frontale consuma più batteria</translation>
    </message>
    <message>
        <source>@OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>@OTG</source>
        <translation>Unità USB</translation>
    </message>
    <message>
        <source>@PhotoCreatedDate</source>
        <translation>Data della foto</translation>
    </message>
    <message>
        <source>@PhotoWasAddedToPlaylist</source>
        <translation>%s foto aggiunta a «%s»</translation>
    </message>
    <message numerus="yes">
        <source>@PhotosWereAddedToPlaylist</source>
        <translation>
            <numerusform>%s foto aggiunta a «%s»</numerusform>
            <numerusform>%s foto aggiunte a «%s»</numerusform>
        </translation>
    </message>
    <message>
        <source>@PlayItem</source>
        <translation>Riproduci</translation>
    </message>
    <message>
        <source>@Position</source>
        <translation>Posizione</translation>
    </message>
    <message>
        <source>@PreviousPage</source>
        <translation>Pagina precedente</translation>
    </message>
    <message>
        <source>@Regular</source>
        <translation>Normale</translation>
    </message>
    <message>
        <source>@Rename</source>
        <translation>Rinomina</translation>
    </message>
    <message>
        <source>@SDcard</source>
        <translation>Scheda SD</translation>
    </message>
    <message>
        <source>@Save</source>
        <translation>Salva</translation>
    </message>
    <message numerus="yes">
        <source>@Second</source>
        <translation>
            <numerusform>secondo</numerusform>
            <numerusform>secondi</numerusform>
        </translation>
    </message>
    <message>
        <source>@Second_2</source>
        <translation>secondi</translation>
    </message>
    <message>
        <source>@SelectBooks</source>
        <translation>Scegli le foto</translation>
    </message>
    <message>
        <source>@SelectMultiple</source>
        <translation>Seleziona più foto</translation>
    </message>
    <message>
        <source>@SetCustomInterval</source>
        <translation>Imposta durata</translation>
    </message>
    <message>
        <source>@ShowAsGrid</source>
        <extracomment>Shows the pictures of a playlist as a grid; read aloud</extracomment>
        <translation>Mostra come griglia</translation>
    </message>
    <message>
        <source>@ShowAsList</source>
        <extracomment>Shows the pictures of a playlist as a list; read aloud</extracomment>
        <translation>Mostra come elenco</translation>
    </message>
    <message>
        <source>@ShowPhotoCreatedDate</source>
        <translation>Mostra data della foto</translation>
    </message>
    <message>
        <source>@Show_panel_time</source>
        <translation>Mostra data e ora</translation>
    </message>
    <message>
        <source>@Shuffle</source>
        <translation>Ordine casuale</translation>
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
        <translation>Impostazioni presentazione</translation>
    </message>
    <message>
        <source>@StartPlayback</source>
        <translation>Avvia presentazione</translation>
    </message>
    <message>
        <source>@StopSlideshow</source>
        <translation>Ferma presentazione</translation>
    </message>
    <message>
        <source>@Storages</source>
        <translation>Memorie</translation>
    </message>
    <message>
        <source>@Style</source>
        <translation>Stile</translation>
    </message>
    <message>
        <source>@ThereAreNoPicturesYet</source>
        <translation>Non ci sono ancora foto. Tocca + per aggiungerne.</translation>
    </message>
    <message>
        <source>@ThereAreNoPlaylistsYet</source>
        <translation>Nessuna playlist. Tocca «Nuova playlist» per crearne una.</translation>
    </message>
    <message>
        <source>@WhenPlaybackIsActiveTheDeviceWillNotAutomaticallyBeTurnedOff</source>
        <translation>Durante la presentazione non si spegne automaticamente</translation>
    </message>
    <message>
        <source>@picture_stand</source>
        <translation>Cornice per foto</translation>
    </message>
</context>
</TS>
