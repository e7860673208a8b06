<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" sourcelanguage="en_US">
<context>
    <name>CommandLine</name>
    <message>
        <source>Files to open.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>CropWindowCommands</name>
    <message>
        <source>Undo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Redo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New Window</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New Tab</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Export Crop…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close Window</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close Tab</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zoom In</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zoom Out</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zoom to Fit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Actual Size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show Inspector</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hide Inspector</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Preview Crop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Exit Preview</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset Crop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Format</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Increase Quality</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Decrease Quality</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset Quality</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Codec</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Increase Bitrate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Decrease Bitrate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Match Original Bitrate</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ExportFooterText</name>
    <message>
        <source>Exporting…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Finalizing…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Exporting</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ready</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zoom: CMD-Scroll.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pan: middle or right mouse buttons.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fit: double-click.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keep crop ratio: Shift-drag a corner.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ExportNotice</name>
    <message>
        <source>Export finished</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ExportSummary</name>
    <message>
        <source>%1 · %2 · %3 × %4 · %5 Mbps · %6 · exported in %7 s</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Failure</name>
    <message>
        <source>Cannot start encoding.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot start decoding.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Decoding did not complete.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Encoding did not complete.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reading was interrupted.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Encoding was interrupted.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot append an encoded sample.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The crop must fit inside the video and have even dimensions of at least two pixels.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>HDR video requires HEVC. Select HEVC to preserve the video&apos;s dynamic range.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose a positive supported video bitrate.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This codec or encoding configuration is unavailable on %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot configure the video pipeline.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot read the original audio format.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The original audio cannot be copied into a MOV file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This file has no readable video track.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not a regular file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>“%1” could not be opened</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>“%1” could not be read</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>“%1” could not be saved</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>this Mac</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>this computer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is not enough memory.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>An unknown error occurred.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No such file or directory</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Permission denied</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No space left on device</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Disk quota exceeded</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File too large</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File name too long</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Is a directory</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not a directory</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Read-only file system</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input/output error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Too many open files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The original audio is damaged and cannot be copied into a MOV file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The movie header is damaged</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The movie header is incomplete</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The movie header points outside the media</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Some of it is damaged</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The track is no longer there</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Some of its sound is missing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The last picture lasts too long</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A box is damaged</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>An edit has a negative length</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A track is missing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The movie header is missing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The movie header is too long</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing decodes its pictures</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Its pictures cannot be decoded</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>It shows no pictures</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>None of its pictures can be decoded</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Too many of its pictures are damaged</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invalid data found when processing input</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>End of file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Decoder not found</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Encoder not found</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Demuxer not found</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stream not found</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Generic error in an external library</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Internal bug, should not have happened</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not yet implemented in FFmpeg, patches welcome</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknown error occurred</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file ends too early</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The video&apos;s pictures cannot be converted: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The movie is in fragments</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing decodes its sound</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Its sound cannot be decoded</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The finished export was deleted from the temporary folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No video track found</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ImageError</name>
    <message>
        <source>Open a PNG, JPEG, HEIC, or TIFF image.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Animated images and images with multiple pages are not supported.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This image could not be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The crop must stay inside the image and contain at least one pixel.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The cropped image could not be exported.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ImageSource</name>
    <message>
        <source>Image</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SourceFacts</name>
    <message>
        <source>Format</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Resolution</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pixels</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Color profile</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dynamic range</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>HDR</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>SDR</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bitrate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> Mbps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Frame rate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> fps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Duration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> s</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::CanvasScrollView</name>
    <message>
        <source>Canvas</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The picture cannot be shown, because this display has no OpenGL 3.2. Everything else works.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::CropCanvasFields</name>
    <message>
        <source>Left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Top</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Right</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bottom</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::CropCanvasSection</name>
    <message>
        <source>Canvas</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Background</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset Background</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Canvas background</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::CropDescription</name>
    <message>
        <source>Top %1, left %2 pixels</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Top %1 pixels</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Top %1, right %2 pixels</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Right %1 pixels</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bottom %1, right %2 pixels</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bottom %1 pixels</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bottom %1, left %2 pixels</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Left %1 pixels</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 × %2 pixels at %3, %4</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Top left handle</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Top handle</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Top right handle</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Right handle</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bottom right handle</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bottom handle</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bottom left handle</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Left handle</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move right</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move up</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move down</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::CropDimensionField</name>
    <message>
        <source>Crop %1 in pixels</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::CropEncodingSection</name>
    <message>
        <source>Encoding</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Codec</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Match Original Bitrate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>HEVC supports HDR. H.264 is available for SDR videos only.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Video bitrate in Mbps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Higher bitrate preserves more detail and produces larger files.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bitrate</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::CropExportFooter</name>
    <message>
        <source>Export</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Encode and review the crop (%1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Export progress</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel export</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Canvas Help</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Canvas shortcuts</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::CropExportState</name>
    <message>
        <source>Export cancelled</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Export failed</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::CropMenuBar</name>
    <message>
        <source>&amp;File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save a finished export from its review window.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Crop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>E&amp;ncode</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::CropNumberField</name>
    <message>
        <source>%1 crop margin in pixels</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::CropOverlayView</name>
    <message>
        <source>Crop</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::CropResetButton</name>
    <message>
        <source>Reset</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::CropSection</name>
    <message>
        <source>Crop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset Crop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Top</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Right</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bottom</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Width</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Height</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::DesktopNotification</name>
    <message>
        <source>Show</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::EditHistory</name>
    <message>
        <source>Crop and Encoding</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::EditorTabBar</name>
    <message>
        <source>Tabs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close Tab</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close Other Tabs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move Tab to New Window</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::EditorTabRow</name>
    <message>
        <source>Tabs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New Tab</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::EditorToolBar</name>
    <message>
        <source>Tools</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open an image or video</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Undo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Redo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Preview the crop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show or hide the inspector</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Inspector</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Exit Preview</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Preview Crop</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::EditorView</name>
    <message>
        <source>Could Not Open File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Could Not Export File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::EmptyCanvasView</name>
    <message>
        <source>Drop or Open…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sample Video</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::ImageEncodingSection</name>
    <message>
        <source>Encoding</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Format</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset Quality</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fill Color</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset JPEG Background</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>JPEG quality</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Higher quality produces larger files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fill transparent areas</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quality</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::ImageReviewView</name>
    <message>
        <source>Exported image</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::MediaLoader</name>
    <message>
        <source>Images and Videos</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bundled sample video is unavailable.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drop a local image or video file.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::OriginalSection</name>
    <message>
        <source>Original</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::PixelStepper</name>
    <message>
        <source>Increase %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Decrease %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pixels</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::PlayButton</name>
    <message>
        <source>Pause</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Play</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::PlaybackControls</name>
    <message>
        <source>Unmute</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mute</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::PositionSlider</name>
    <message>
        <source>%1 s</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Playback position</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::ReviewControls</name>
    <message>
        <source>Loop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>More</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Exit Full Screen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Enter Full Screen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pause</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Play</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::ReviewWindow</name>
    <message>
        <source>Could Not Save File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save Export</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Do you want to save “%1”?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>It is deleted if you don’t save it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Don’t Save</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::SaveDialog</name>
    <message>
        <source>Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>“%1” already exists. Do you want to replace it?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Replacing it overwrites what it holds.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Replace</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::SaveProgressDialog</name>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Saving</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Saving “%1”…</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::SelectingNumberField</name>
    <message>
        <source>Pixels</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::VideoReviewView</name>
    <message>
        <source>Exported video</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The video cannot be shown, because this display has no OpenGL 3.2. Everything else works.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>vantrel::ZoomControls</name>
    <message>
        <source>Zoom out</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Canvas zoom</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Adjust canvas zoom</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Actual size (%1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fit to window (%1)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
