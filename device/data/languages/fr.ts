<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name>device</name>
    <message>
        <source>@1min</source>
        <translation>1&#xa0;minute</translation>
    </message>
    <message>
        <source>@2min</source>
        <translation>2&#xa0;minutes</translation>
    </message>
    <message>
        <source>@5min</source>
        <translation>5&#xa0;minutes</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningBottomLeft</source>
        <translation>En bas à gauche</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningBottomRight</source>
        <translation>En bas à droite</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningTopLeft</source>
        <translation>En haut à gauche</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningTopRight</source>
        <translation>En haut à droite</translation>
    </message>
    <message>
        <source>@AddPhotos</source>
        <translation>Ajouter les photos</translation>
    </message>
    <message>
        <source>@AddPhotosToPlaylist</source>
        <translation>Ajouter des photos à la playlist</translation>
    </message>
    <message>
        <source>@All</source>
        <translation>Toutes</translation>
    </message>
    <message>
        <source>@AutomaticBrightness</source>
        <translation>Luminosité automatique</translation>
    </message>
    <message>
        <source>@AutomaticColorTemperature</source>
        <translation>Couleur automatique</translation>
    </message>
    <message>
        <source>@AvailableDiskSpace</source>
        <translation>%s libres&#xa;sur %s</translation>
    </message>
    <message>
        <source>@Back</source>
        <extracomment>Leaves a playlist; read aloud</extracomment>
        <translation>Retour</translation>
    </message>
    <message>
        <source>@Bold</source>
        <translation>Gras</translation>
    </message>
    <message>
        <source>@BoldItalic</source>
        <translation>Gras italique</translation>
    </message>
    <message>
        <source>@Brightness</source>
        <translation>Luminosité</translation>
    </message>
    <message>
        <source>@Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>@ChangePictureEvery</source>
        <translation>Durée par photo</translation>
    </message>
    <message>
        <source>@Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>@ColorTemperature</source>
        <translation>Couleur de la lumière</translation>
    </message>
    <message>
        <source>@Continue</source>
        <translation>Continuer</translation>
    </message>
    <message>
        <source>@CreatePlaylist</source>
        <translation>Créer la playlist</translation>
    </message>
    <message>
        <source>@CurrentDateTime</source>
        <translation>Date et heure actuelles</translation>
    </message>
    <message>
        <source>@CustomTime</source>
        <translation>Autre</translation>
    </message>
    <message>
        <source>@CustomizeFontAndPositioning</source>
        <translation>Police et position</translation>
    </message>
    <message>
        <source>@DefaultPlaylist</source>
        <translation>Photos</translation>
    </message>
    <message>
        <source>@Delete</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>@DeviceWontTurnOffUntilYouStopPlayback</source>
        <translation>L’appareil reste allumé jusqu’à l’arrêt du diaporama</translation>
    </message>
    <message>
        <source>@DisplayMode</source>
        <translation>Affichage</translation>
    </message>
    <message>
        <source>@FillScreen</source>
        <translation>Remplir l’écran</translation>
    </message>
    <message>
        <source>@FitToScreenOnBlack</source>
        <translation>Sur fond noir</translation>
    </message>
    <message>
        <source>@FlashDir</source>
        <translation>Appareil</translation>
    </message>
    <message>
        <source>@Font</source>
        <translation>Police</translation>
    </message>
    <message>
        <source>@FrontLight</source>
        <translation>Éclairage</translation>
    </message>
    <message numerus="yes">
        <source>@Hour</source>
        <translation>
            <numerusform>heure</numerusform>
            <numerusform>heures</numerusform>
        </translation>
    </message>
    <message>
        <source>@Hours</source>
        <translation>heures</translation>
    </message>
    <message>
        <source>@Italic</source>
        <translation>Italique</translation>
    </message>
    <message>
        <source>@KA_menu</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>@KA_next</source>
        <translation>Photo suivante</translation>
    </message>
    <message>
        <source>@KA_prev</source>
        <translation>Photo précédente</translation>
    </message>
    <message>
        <source>@KeyDone</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>@KeyLanguage</source>
        <translation>Langue</translation>
    </message>
    <message>
        <source>@KeyShift</source>
        <translation>Maj</translation>
    </message>
    <message>
        <source>@KeySpace</source>
        <translation>Espace</translation>
    </message>
    <message numerus="yes">
        <source>@Minute</source>
        <translation>
            <numerusform>minute</numerusform>
            <numerusform>minutes</numerusform>
        </translation>
    </message>
    <message>
        <source>@MonthOfDay</source>
        <translation>%1</translation>
    </message>
    <message>
        <source>@New_playlist</source>
        <translation>Nouvelle playlist</translation>
    </message>
    <message>
        <source>@NextPage</source>
        <translation>Page suivante</translation>
    </message>
    <message>
        <source>@NoteThatEnablingFrontlightLeadsToFasterBatteryDraining</source>
        <translation>L’éclairage vide la batterie plus vite</translation>
    </message>
    <message>
        <source>@OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>@OTG</source>
        <translation>Clé USB</translation>
    </message>
    <message>
        <source>@PhotoCreatedDate</source>
        <translation>Date de la photo</translation>
    </message>
    <message>
        <source>@PhotoWasAddedToPlaylist</source>
        <translation>%s photo a été ajoutée à «&#xa0;%s&#xa0;»</translation>
    </message>
    <message numerus="yes">
        <source>@PhotosWereAddedToPlaylist</source>
        <translation>
            <numerusform>%s photo a été ajoutée à «&#xa0;%s&#xa0;»</numerusform>
            <numerusform>%s photos ont été ajoutées à «&#xa0;%s&#xa0;»</numerusform>
        </translation>
    </message>
    <message>
        <source>@PlayItem</source>
        <translation>Lire</translation>
    </message>
    <message>
        <source>@Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>@PreviousPage</source>
        <translation>Page précédente</translation>
    </message>
    <message>
        <source>@Regular</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>@Rename</source>
        <translation>Renommer</translation>
    </message>
    <message>
        <source>@SDcard</source>
        <translation>Carte SD</translation>
    </message>
    <message>
        <source>@Save</source>
        <translation>Enregistrer</translation>
    </message>
    <message numerus="yes">
        <source>@Second</source>
        <translation>
            <numerusform>seconde</numerusform>
            <numerusform>secondes</numerusform>
        </translation>
    </message>
    <message>
        <source>@Second_2</source>
        <translation>secondes</translation>
    </message>
    <message>
        <source>@SelectBooks</source>
        <translation>Choisir des photos</translation>
    </message>
    <message>
        <source>@SelectMultiple</source>
        <translation>Sélection multiple</translation>
    </message>
    <message>
        <source>@SetCustomInterval</source>
        <translation>Définir la durée</translation>
    </message>
    <message>
        <source>@ShowAsGrid</source>
        <extracomment>Shows the pictures of a playlist as a grid; read aloud</extracomment>
        <translation>Afficher en grille</translation>
    </message>
    <message>
        <source>@ShowAsList</source>
        <extracomment>Shows the pictures of a playlist as a list; read aloud</extracomment>
        <translation>Afficher en liste</translation>
    </message>
    <message>
        <source>@ShowPhotoCreatedDate</source>
        <translation>Afficher la date de la photo</translation>
    </message>
    <message>
        <source>@Show_panel_time</source>
        <translation>Afficher la date et l’heure</translation>
    </message>
    <message>
        <source>@Shuffle</source>
        <translation>Ordre aléatoire</translation>
    </message>
    <message>
        <source>@Size_B</source>
        <translation>o</translation>
    </message>
    <message>
        <source>@Size_GB</source>
        <translation>Go</translation>
    </message>
    <message>
        <source>@Size_KB</source>
        <translation>Ko</translation>
    </message>
    <message>
        <source>@Size_MB</source>
        <translation>Mo</translation>
    </message>
    <message>
        <source>@Size_TB</source>
        <translation>To</translation>
    </message>
    <message>
        <source>@SlideshowSettings</source>
        <translation>Réglages du diaporama</translation>
    </message>
    <message>
        <source>@StartPlayback</source>
        <translation>Lancer le diaporama</translation>
    </message>
    <message>
        <source>@StopSlideshow</source>
        <translation>Arrêter le diaporama</translation>
    </message>
    <message>
        <source>@Storages</source>
        <translation>Stockage</translation>
    </message>
    <message>
        <source>@Style</source>
        <translation>Style</translation>
    </message>
    <message>
        <source>@ThereAreNoPicturesYet</source>
        <translation>Aucune photo pour l’instant. Touchez + pour en ajouter.</translation>
    </message>
    <message>
        <source>@ThereAreNoPlaylistsYet</source>
        <translation>Aucune playlist. Touchez «&#xa0;Nouvelle playlist&#xa0;» pour en créer une.</translation>
    </message>
    <message>
        <source>@WhenPlaybackIsActiveTheDeviceWillNotAutomaticallyBeTurnedOff</source>
        <translation>Pendant le diaporama, il ne s’éteint pas automatiquement</translation>
    </message>
    <message>
        <source>@picture_stand</source>
        <translation>Cadre photo</translation>
    </message>
</context>
</TS>
