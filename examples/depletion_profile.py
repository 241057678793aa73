"""Makes a depletion profile and writes a contact sheet with a labelled picture of every step.

Two blobs are made by importance sampling, added, taken off a latitude ramp, turned about the pole
and tilted, and blended. Crosses mark where the blobs must be by latitude (from the pole) and
longitude; the program also searches for them and prints both.
"""

import argparse
import math

import _Orvane

from picture import SIGNED, Picture

BANDS = 30
WIDTH, HEIGHT = 256, 128  # of each picture
GAP, LABEL_HEIGHT = 8, 14
COLUMNS = 3

# latitude and longitude of the mean, standard deviation, all in radians
WIDE = (math.radians(60), math.radians(90), 0.30)
NARROW = (math.radians(100), math.radians(230), 0.15)

TURN = math.radians(45)
TILT = math.radians(30)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("picture", help="PNG file to write")
    options = parser.parse_args()

    builder = _Orvane.SHBuilder()
    builder.GenerateLookUpTables(1024)
    builder.GenerateSphericalSamples(1, 512)
    builder.GeneratePDFSamples(1, 64, 32768)
    sheet = ContactSheet(builder)

    wide = make_blob(builder, *WIDE)
    sheet.add("wide blob, 60 / 90", wide, [WIDE])
    narrow = make_blob(builder, *NARROW)
    sheet.add("narrow blob, 100 / 230", narrow, [NARROW])
    density = builder.AddSH(builder.CopySH(wide), narrow)
    sheet.add("density: sum of both", density, [WIDE, NARROW])

    ramp = builder.CreateLatitudeSH(BANDS)
    sheet.add("latitude ramp", ramp, [])
    depleted = builder.SubtractSH(builder.CopySH(ramp), density)
    sheet.add("depleted: ramp - density", depleted, [WIDE, NARROW], -1)

    turned = builder.RotateZ(density, TURN)
    sheet.add("density turned by 45 about z", turned, [turn(WIDE), turn(NARROW)])
    tilted = builder.RotateSH(density, tilt_matrix(TILT))
    sheet.add("density tilted by 30 about x", tilted, [tilt(WIDE), tilt(NARROW)])

    blended = builder.CopySH(density)
    builder.LerpSH(blended, turned, tilted, 0.5)
    sheet.add("blend of both, half and half", blended,
              [turn(WIDE), turn(NARROW), tilt(WIDE), tilt(NARROW)])
    profile = builder.CopySH(ramp)
    builder.CopyScaleAndSubtractSH(profile, ramp, 0.8, blended)
    sheet.add("profile: 0.8 * ramp - blend", profile,
              [turn(WIDE), turn(NARROW), tilt(WIDE), tilt(NARROW)], -1)

    sheet.write(options.picture)


def make_blob(builder, latitude, longitude, std_dev):
    """A Gaussian made by importance sampling, scaled to 1 at its mean."""
    blob = builder.CreateImportanceSampledGaussSH(latitude, longitude, std_dev)
    return builder.ScaleSH(blob, 1 / builder.GetValueAt(blob, longitude, latitude))


def turn(blob):
    """Where RotateZ by TURN moves a blob: the result at phi is the input at phi + TURN."""
    latitude, longitude, std_dev = blob
    return latitude, (longitude - TURN) % (2 * math.pi), std_dev


def tilt_matrix(angle):
    """Turns row vectors about x: (0, 0, 1) goes to (0, -sin, cos)."""
    c, s = math.cos(angle), math.sin(angle)
    return ((1.0, 0.0, 0.0, 0.0),
            (0.0, c, s, 0.0),
            (0.0, -s, c, 0.0),
            (0.0, 0.0, 0.0, 1.0))


def tilt(blob):
    """Where RotateSH by tilt_matrix(TILT) moves a blob.

    The matrix acts on the band-1 coefficients of a set as on a row vector (x, y, z). The basis
    functions of orders 1 and -1 are negative along +x and +y, so the vector that stands for a
    direction has its x and y negated, before and after.
    """
    latitude, longitude, std_dev = blob
    vector = (-math.sin(latitude) * math.cos(longitude),
              -math.sin(latitude) * math.sin(longitude),
              math.cos(latitude))
    matrix = tilt_matrix(TILT)
    x, y, z = [sum(vector[i] * matrix[i][j] for i in range(3)) for j in range(3)]
    return math.acos(z), math.atan2(-y, -x) % (2 * math.pi), std_dev


class ContactSheet(object):
    """Renders sets, looks for the blobs in them, and draws all on one sheet."""

    def __init__(self, builder):
        self.builder = builder
        self.entries = []
        builder.SetImageBuffer(WIDTH, HEIGHT)

    def add(self, label, sh, blobs, sign=1):
        """Add a picture of sh, black where it is 0.

        blobs: where extremes of sh are expected; sign: 1 for maxima, -1 for minima
        """
        self.builder.RenderSHToImageBuffer(sh, 110.0, 128, 1, 0)
        self.entries.append((label, str(self.builder.GetImageBuffer()), blobs))
        print label
        for latitude, longitude, std_dev in blobs:
            found = self.find_extreme(sh, latitude, longitude, std_dev, sign)
            print "    expected at latitude %5.1f, longitude %5.1f; found at %5.1f, %5.1f" % tuple(
                math.degrees(angle) for angle in (latitude, longitude) + found)

    def find_extreme(self, sh, latitude, longitude, std_dev, sign):
        """Where sh is largest (sign 1) or smallest (-1) near a point: (latitude, longitude)."""
        steps = [step * std_dev / 20 for step in range(-20, 21)]
        nearby = [(latitude + down, longitude + along) for down in steps for along in steps]
        return max(nearby, key=lambda at: sign * self.builder.GetValueAt(sh, at[1], at[0]))

    def write(self, path):
        rows = (len(self.entries) + COLUMNS - 1) // COLUMNS
        sheet = Picture(GAP + COLUMNS * (WIDTH + GAP), GAP + rows * (HEIGHT + LABEL_HEIGHT + GAP))
        for index, (label, image, blobs) in enumerate(self.entries):
            left = GAP + index % COLUMNS * (WIDTH + GAP)
            top = GAP + index // COLUMNS * (HEIGHT + LABEL_HEIGHT + GAP)
            sheet.text(left, top, label)
            top += LABEL_HEIGHT
            sheet.flat(left, top, image, WIDTH, SIGNED)
            for latitude, longitude, _ in blobs:
                sheet.cross(left + int(longitude / (2 * math.pi) * WIDTH),
                            top + int(latitude / math.pi * HEIGHT))
        sheet.write(path)


if __name__ == "__main__":
    main()
