"""Catalogs of films that nobody has to make: zivora sets up the file, and the rows come from here."""

import json
import random
import sqlite3
import subprocess
import tempfile

EMPTY_VALUES = {"INTEGER": 0, "REAL": 0.0, "TEXT": "", "BLOB": b"", "ANY": 0}


def make_catalog(program, path, films):
    """Makes a catalog of films: dictionaries with a path in bytes, and where they have them facts, an error, a picture and vanished."""
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([program, "scan", folder, "--to", path], check=True, stdout=subprocess.DEVNULL)
    with sqlite3.connect(path) as database:
        # Columns that are not spoken of here get what is least.
        rest = {name: EMPTY_VALUES[kind] for _, name, kind, is_needed, default, is_key in database.execute("PRAGMA table_info(films)")
                if is_needed and default is None and not is_key}
        for film in films:
            row = {**rest, "path": film["path"], "facts": json.dumps(film.get("facts", {})), "error": film.get("error"),
                   "vanished": film.get("vanished", 0)}
            names = ", ".join(row)
            number = database.execute(f"INSERT INTO films ({names}) VALUES ({', '.join('?' * len(row))})", list(row.values())).lastrowid
            if "picture" in film:
                database.execute("INSERT INTO pictures (film, picture) VALUES (?, ?)", (number, film["picture"]))
    database.close()


WORDS = """Amber Autumn Bridge Candle Cédille Cloud Copper Dawn Delta Distant Écho Ember Fjord Forest Garden Glass Granite Harbour Hollow Ivory
Juniper Königin Lantern Late Lighthouse Linden Long Meadow Midnight Morning North Ocean Orchard Paper Quiet Rain River Salt Señora Shadow Silver
Slow Snow Stone Summer Tide Umbra Valley Velvet Willow Winter Yellow Zephyr""".split()
PICTURES = [(3840, 2160, "HEVC", 10), (1920, 1080, "H264", 8), (1280, 720, "H264", 8), (720, 576, "MPEG-2", 8), (1920, 1080, "AV1", 10)]
HDR_FORMATS = ["HDR10", "HDR10+", "HLG", "DolbyVision Profile 8.1"]
SOUNDS = [("AC-3", 6), ("AAC LC", 2), ("DTS-HD MA", 8), ("E-AC-3", 6), ("Opus", 2), ("TrueHD", 8)]
LANGUAGES = ["English", "German", "French", "Japanese", "Spanish", "Italian", "Danish", "Korean", "Polish", "Swedish"]


def make_films(count, pictures=()):
    """Films as a library has them, the same ones every time."""
    chance = random.Random(7)
    for number in range(count):
        name = " ".join(chance.sample(WORDS, chance.choice([2, 2, 3])))
        container = chance.choice(["mkv", "mkv", "mkv", "mp4", "m2ts", "avi"])
        width, height, codec, depth = chance.choices(PICTURES, [4, 8, 3, 2, 1])[0]
        path = f"/srv/films/{name[0]}/{name} ({1950 + number % 75})/{name}.{number}.{container}".encode()
        if chance.random() < 0.012:
            yield {"path": path, "error": chance.choice(["the worker ran longer than 60 s and was ended", "the worker was ended by signal 11",
                                                         "moov: the atom is 40 bytes long and 8 are left"])}
            continue
        sounds = chance.sample(SOUNDS, chance.choice([1, 1, 2, 3]))
        duration = int(chance.choice([abs(chance.gauss(100, 22)), abs(chance.gauss(44, 8)), abs(chance.gauss(8, 5))]) * 60) + 20
        bitrate = int(width * height / 400 * chance.uniform(0.5, 1.5))
        facts = {
            "Media Type": "Video", "File Type": container, "Duration": duration, "Bitrate": bitrate, "File Size": bitrate * 125 * duration,
            "Width": width, "Height": height, "FPS": chance.choice([23.976, 24, 25, 59.94]), "Color Depth": depth,
            "Compression": f"{container} video (video: {codec}, audio: {sounds[0][0]})", "Video Codec": codec, "Video Scan": "Progressive",
            "Color Space": "BT.2020" if width > 2000 else "BT.709", "Aspect Ratio": 1.78, "Channels": sounds[0][1],
            "Audio Codec": [name for name, _ in sounds], "Audio Channels": [channels for _, channels in sounds],
            "Audio Language": [chance.choices(LANGUAGES, [12, 5, 3, 3, 2, 2, 1, 1, 1, 1])[0] for _ in sounds],
            "Subtitle Language": chance.sample(LANGUAGES, chance.choice([0, 1, 3])), "Genre": chance.choice(["Drama", "Comedy", "Documentary"]),
        }
        if width > 2000 and chance.random() < 0.8:
            facts |= {"HDR Format": chance.choice(HDR_FORMATS), "HDR Peak Luminance": 1000}
        film = {"path": path, "facts": facts}
        if pictures:
            film["picture"] = pictures[number % len(pictures)]
        yield film


def write_page(program, catalog, page):
    """Has the program write its page, and returns what it says."""
    return subprocess.run([program, "report", catalog, page], check=True, capture_output=True, text=True).stdout
