<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
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
        <translation>Bottom left</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningBottomRight</source>
        <translation>Bottom right</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningTopLeft</source>
        <translation>Top left</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningTopRight</source>
        <translation>Top right</translation>
    </message>
    <message>
        <source>@AddPhotos</source>
        <extracomment>Button: adds the selected pictures</extracomment>
        <translation>Add pictures</translation>
    </message>
    <message>
        <source>@AddPhotosToPlaylist</source>
        <translation>Add pictures to playlist</translation>
    </message>
    <message>
        <source>@All</source>
        <extracomment>Beside the box that selects all pictures</extracomment>
        <translation>All</translation>
    </message>
    <message>
        <source>@AutomaticBrightness</source>
        <translation>Automatic brightness</translation>
    </message>
    <message>
        <source>@AutomaticColorTemperature</source>
        <extracomment>The colour of the light, from cold to warm</extracomment>
        <translation>Automatic warmth</translation>
    </message>
    <message>
        <source>@AvailableDiskSpace</source>
        <extracomment>First the free space, then the size of the storage; two lines</extracomment>
        <translation>%s free&#xa;of %s</translation>
    </message>
    <message>
        <source>@Back</source>
        <extracomment>Leaves a playlist; read aloud</extracomment>
        <translation>Back</translation>
    </message>
    <message>
        <source>@Bold</source>
        <translation>Bold</translation>
    </message>
    <message>
        <source>@BoldItalic</source>
        <translation>Bold italic</translation>
    </message>
    <message>
        <source>@Brightness</source>
        <translation>Brightness</translation>
    </message>
    <message>
        <source>@Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>@ChangePictureEvery</source>
        <extracomment>A time is shown beside or below it</extracomment>
        <translation>Change picture every</translation>
    </message>
    <message>
        <source>@Close</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>@ColorTemperature</source>
        <extracomment>The colour of the light, from cold to warm</extracomment>
        <translation>Warmth</translation>
    </message>
    <message>
        <source>@Continue</source>
        <translation>Continue</translation>
    </message>
    <message>
        <source>@CreatePlaylist</source>
        <translation>Create playlist</translation>
    </message>
    <message>
        <source>@CurrentDateTime</source>
        <translation>Current date and time</translation>
    </message>
    <message>
        <source>@CustomTime</source>
        <extracomment>Last of a list of times; the time may follow in brackets</extracomment>
        <translation>Custom</translation>
    </message>
    <message>
        <source>@CustomizeFontAndPositioning</source>
        <translation>Font and position</translation>
    </message>
    <message>
        <source>@DefaultPlaylist</source>
        <extracomment>Title of the playlist that a new device has</extracomment>
        <translation>Photos</translation>
    </message>
    <message>
        <source>@Delete</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>@DeviceWontTurnOffUntilYouStopPlayback</source>
        <extracomment>With the note below it five lines at most, 864 pixels wide</extracomment>
        <translation>The device won’t turn off until you stop playback</translation>
    </message>
    <message>
        <source>@DisplayMode</source>
        <translation>Display mode</translation>
    </message>
    <message>
        <source>@FillScreen</source>
        <translation>Fill screen</translation>
    </message>
    <message>
        <source>@FitToScreenOnBlack</source>
        <extracomment>The whole picture, what is left of the screen is black</extracomment>
        <translation>Fit on black</translation>
    </message>
    <message>
        <source>@FlashDir</source>
        <extracomment>Name of a storage: 280 pixels at most, as @SDcard and @OTG</extracomment>
        <translation>This device</translation>
    </message>
    <message>
        <source>@Font</source>
        <translation>Font</translation>
    </message>
    <message>
        <source>@FrontLight</source>
        <translation>Frontlight</translation>
    </message>
    <message numerus="yes">
        <source>@Hour</source>
        <extracomment>Follows its number</extracomment>
        <translation>
            <numerusform>hour</numerusform>
            <numerusform>hours</numerusform>
        </translation>
    </message>
    <message>
        <source>@Hours</source>
        <extracomment>In a list of units</extracomment>
        <translation>hours</translation>
    </message>
    <message>
        <source>@Italic</source>
        <translation>Italic</translation>
    </message>
    <message>
        <source>@KA_menu</source>
        <extracomment>What a key does</extracomment>
        <translation>Menu</translation>
    </message>
    <message>
        <source>@KA_next</source>
        <extracomment>What a key does</extracomment>
        <translation>Next picture</translation>
    </message>
    <message>
        <source>@KA_prev</source>
        <extracomment>What a key does</extracomment>
        <translation>Previous picture</translation>
    </message>
    <message>
        <source>@KeyDone</source>
        <extracomment>Keyboard: ends writing</extracomment>
        <translation>Done</translation>
    </message>
    <message>
        <source>@KeyLanguage</source>
        <extracomment>Keyboard: the language's letters, or plain ones</extracomment>
        <translation>Language</translation>
    </message>
    <message>
        <source>@KeyShift</source>
        <extracomment>Keyboard: capitals</extracomment>
        <translation>Shift</translation>
    </message>
    <message>
        <source>@KeySpace</source>
        <extracomment>Keyboard</extracomment>
        <translation>Space</translation>
    </message>
    <message numerus="yes">
        <source>@Minute</source>
        <extracomment>Follows its number; the form for two also stands in a list of units</extracomment>
        <translation>
            <numerusform>minute</numerusform>
            <numerusform>minutes</numerusform>
        </translation>
    </message>
    <message>
        <source>@MonthOfDay</source>
        <extracomment>The name of a month, in the case that goes with a day, as it follows the number of the day</extracomment>
        <translation>%1</translation>
    </message>
    <message>
        <source>@New_playlist</source>
        <translation>New playlist</translation>
    </message>
    <message>
        <source>@NextPage</source>
        <translation>Next page</translation>
    </message>
    <message>
        <source>@NoteThatEnablingFrontlightLeadsToFasterBatteryDraining</source>
        <translation>Note that the frontlight drains the battery faster</translation>
    </message>
    <message>
        <source>@OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>@OTG</source>
        <translation>USB drive</translation>
    </message>
    <message>
        <source>@PhotoCreatedDate</source>
        <translation>Photo date</translation>
    </message>
    <message>
        <source>@PhotoWasAddedToPlaylist</source>
        <extracomment>First the number of pictures, then the title of the playlist</extracomment>
        <translation>%s picture was added to %s</translation>
    </message>
    <message numerus="yes">
        <source>@PhotosWereAddedToPlaylist</source>
        <extracomment>First the number of pictures, then the title of the playlist</extracomment>
        <translation>
            <numerusform>%s picture was added to %s</numerusform>
            <numerusform>%s pictures were added to %s</numerusform>
        </translation>
    </message>
    <message>
        <source>@PlayItem</source>
        <translation>Play</translation>
    </message>
    <message>
        <source>@Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>@PreviousPage</source>
        <translation>Previous page</translation>
    </message>
    <message>
        <source>@Regular</source>
        <translation>Regular</translation>
    </message>
    <message>
        <source>@Rename</source>
        <translation>Rename</translation>
    </message>
    <message>
        <source>@SDcard</source>
        <translation>SD card</translation>
    </message>
    <message>
        <source>@Save</source>
        <translation>Save</translation>
    </message>
    <message numerus="yes">
        <source>@Second</source>
        <extracomment>Follows its number; the form for two also stands in a list of units</extracomment>
        <translation>
            <numerusform>second</numerusform>
            <numerusform>seconds</numerusform>
        </translation>
    </message>
    <message>
        <source>@Second_2</source>
        <extracomment>Follows 2, 5, 10 or 30 and a blank: short where these take different forms</extracomment>
        <translation>seconds</translation>
    </message>
    <message>
        <source>@SelectBooks</source>
        <extracomment>Follows the number of pictures that are selected</extracomment>
        <translation>Select pictures</translation>
    </message>
    <message>
        <source>@SelectMultiple</source>
        <translation>Select multiple</translation>
    </message>
    <message>
        <source>@SetCustomInterval</source>
        <translation>Set custom interval</translation>
    </message>
    <message>
        <source>@ShowAsGrid</source>
        <extracomment>Shows the pictures of a playlist as a grid; read aloud</extracomment>
        <translation>Show as grid</translation>
    </message>
    <message>
        <source>@ShowAsList</source>
        <extracomment>Shows the pictures of a playlist as a list; read aloud</extracomment>
        <translation>Show as list</translation>
    </message>
    <message>
        <source>@ShowPhotoCreatedDate</source>
        <translation>Show photo date</translation>
    </message>
    <message>
        <source>@Show_panel_time</source>
        <translation>Show date and time</translation>
    </message>
    <message>
        <source>@Shuffle</source>
        <translation>Shuffle</translation>
    </message>
    <message>
        <source>@Size_B</source>
        <extracomment>Units of a storage's size: bytes and, by 1024, what follows</extracomment>
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
        <translation>Slideshow settings</translation>
    </message>
    <message>
        <source>@StartPlayback</source>
        <translation>Start playback</translation>
    </message>
    <message>
        <source>@StopSlideshow</source>
        <translation>Stop slideshow</translation>
    </message>
    <message>
        <source>@Storages</source>
        <extracomment>Top of the folders: this device, card and USB</extracomment>
        <translation>Storage</translation>
    </message>
    <message>
        <source>@Style</source>
        <translation>Style</translation>
    </message>
    <message>
        <source>@ThereAreNoPicturesYet</source>
        <extracomment>Two lines at most</extracomment>
        <translation>There are no pictures yet. Tap + to add some.</translation>
    </message>
    <message>
        <source>@ThereAreNoPlaylistsYet</source>
        <extracomment>Two lines at most</extracomment>
        <translation>There are no playlists yet. Tap New playlist to make one.</translation>
    </message>
    <message>
        <source>@WhenPlaybackIsActiveTheDeviceWillNotAutomaticallyBeTurnedOff</source>
        <translation>While playback is active, the device does not turn itself off</translation>
    </message>
    <message>
        <source>@picture_stand</source>
        <extracomment>Name of the application</extracomment>
        <translation>Picture frame</translation>
    </message>
</context>
</TS>
