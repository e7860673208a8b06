"""The films that the video benchmarks start from, made with the ffmpeg command and kept."""

import subprocess

from measure import tool

FRAME_RATE = 30
# Shots of five seconds that cut to another at 2.0 and 3.5 s: pans over the picture of make_photo, at
# speeds that are no whole pixels, with a zooming fractal that moves over it and the noise of a sensor.
PAN_X = (r"if(lt(mod(t\,5)\,2)\,40*t+60*mod(t\,5)\,"
         r"if(lt(mod(t\,5)\,3.5)\,1700-420*(mod(t\,5)-2)-20*t\,600+9*mod(t\,5)+11*t))")
PAN_Y = (r"if(lt(mod(t\,5)\,2)\,200+11*t+30*sin(3*t)\,"
         r"if(lt(mod(t\,5)\,3.5)\,1300-30*t-90*(mod(t\,5)-2)\,700+40*sin(t)))")
DESCRIPTION = ("The films are pans over a picture that compresses like a photograph, enlarged by a "
               "third, with a zooming fractal that moves over it, noise and two cuts in five seconds; "
               "H.264 with AAC, 30 frames a second.")


class Films:
    def __init__(self, binaries, folder):
        self.folder, self.ffmpeg = folder, tool("ffmpeg")
        folder.mkdir(parents=True, exist_ok=True)
        self.photo = folder / "photo.ppm"
        if not self.photo.exists():
            self.command(binaries / "make_photo", "6000", "4000", self.photo)

    def command(self, *arguments):
        subprocess.run(arguments, check=True, stdin=subprocess.DEVNULL)

    def convert(self, name, *arguments):
        """A film of that name made by these arguments of ffmpeg, unless it is there."""
        target = self.folder / name
        if not target.exists():
            partial = self.folder / f"partial-{name}"
            self.command(self.ffmpeg, "-y", "-v", "error", *arguments, partial)
            partial.rename(target)
        return target

    def make(self, name, width, height, seconds, fade=False):
        """A new film; with `fade`, it begins in black and comes up in its first second and a half."""
        scene = (
            f"[0]format=yuv420p,crop={width * 3 // 4}:{height * 3 // 4}:'{PAN_X}':'{PAN_Y}',"
            f"scale={width}:{height}:flags=bicubic[back];[1]format=yuv420p[front];"
            f"[back][front]overlay=x='W*0.1+90*t':y='H*0.3+60*sin(2*t)',noise=alls=3:allf=t,"
            + ("fade=t=in:st=0.3:d=1.2," if fade else "")
            + "setparams=range=tv:colorspace=bt709:color_primaries=bt709:color_trc=bt709,"
            "format=yuv420p"
        )
        fractal = (f"mandelbrot=s={width // 4}x{height // 3}:r={FRAME_RATE}:"
                   "start_scale=0.3:end_scale=0.01:maxiter=400")
        return self.convert(
            name,
            "-loop", "1", "-framerate", str(FRAME_RATE), "-t", str(seconds), "-i", self.photo,
            "-f", "lavfi", "-t", str(seconds), "-i", fractal,
            "-f", "lavfi", "-t", str(seconds), "-i", "anoisesrc=color=pink:amplitude=0.3",
            "-filter_complex", scene, "-c:v", "libx264", "-preset", "superfast", "-crf", "17",
            "-c:a", "aac", "-b:a", "128k", "-t", str(seconds),
        )  # fmt: skip

    def shortened(self, name, film, seconds):
        return self.convert(name, "-i", film, "-c", "copy", "-t", str(seconds))

    def repeated(self, name, film, times):
        return self.convert(name, "-stream_loop", str(times - 1), "-i", film, "-c", "copy")

    def turned(self, name, film):
        """The same pictures, to be shown after a quarter turn to the right."""
        if b"display_rotation" in subprocess.run(
            [self.ffmpeg, "-v", "quiet", "-h", "full"], capture_output=True, check=True
        ).stdout:
            return self.convert(name, "-display_rotation", "-90", "-i", film, "-c", "copy")
        # Before it had that option, ffmpeg counted the tag to the left.
        return self.convert(name, "-i", film, "-c", "copy", "-metadata:s:v:0", "rotate=270")
