"""What the 256 byte values of a rendered picture look like."""


def _diverging():
    colours = []
    for value in range(256):
        strength = abs(value - 128) / 128.0
        full = (255, 176, 64) if value > 128 else (64, 152, 255)
        colours.append(tuple(int(channel * strength) for channel in full))
    return colours


# Grey as bright as the byte.
GREY = [(value, value, value) for value in range(256)]
# Blue below 128, black at 128, orange above: for functions that change sign.
DIVERGING = _diverging()
