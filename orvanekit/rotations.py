"""Matrices for RotateSH that turn what one sees.

The module's band 1 points to -x and -y, for the sign (-1)^m, and its matrix
acts on row vectors. A field turns by R, on column vectors (x at phi = 0, y
at phi = pi / 2, z the pole), by M[i][j] = d[i] d[j] R[j][i], d = (-1, -1, 1).
"""

import math

_SIGNS = (-1.0, -1.0, 1.0)


def rotation(axis, angle):
    """Turn about an axis, by the right hand: Rodrigues' formula.

    axis: (x, y, z) of any length but 0
    angle: radians; counterclockwise, seen from the axis's tip

    Returns the 4x4 tuple for RotateSH
    Raises ValueError: an axis of length 0, or not finite
    """
    if len(axis) != 3:
        raise ValueError("axis %r; expected (x, y, z)" % (tuple(axis),))
    length = math.sqrt(sum(float(each) * each for each in axis))
    if not 0 < length < float("inf"):
        raise ValueError("axis %r has the length %r; expected a direction"
                         % (tuple(axis), length))
    _finite(angle)
    x, y, z = [each / length for each in axis]
    c, s = math.cos(angle), math.sin(angle)
    t = 2 * math.sin(angle / 2) ** 2  # 1 - c, without cancellation
    return _matrix(((t * x * x + c, t * x * y - s * z, t * x * z + s * y),
                    (t * x * y + s * z, t * y * y + c, t * y * z - s * x),
                    (t * x * z - s * y, t * y * z + s * x, t * z * z + c)))


def rotation_between(start, end):
    """Turn one place to another by the shortest way.

    start, end: places (theta, phi) in radians

    Returns the 4x4 tuple for RotateSH; between antipodes one of the
        shortest ways
    Raises ValueError: an angle that is not finite
    """
    a, b = _direction(start), _direction(end)
    axis = _cross(a, b)
    sine = math.sqrt(sum(each * each for each in axis))
    cosine = sum(p * q for p, q in zip(a, b))
    if sine < 1e-12:
        if cosine > 0:
            return rotation((0.0, 0.0, 1.0), 0.0)
        # Any axis at right angles: from the coordinate farthest away.
        least = min(range(3), key=lambda i: abs(a[i]))
        axis = _cross(a, [float(i == least) for i in range(3)])
    return rotation(axis, math.atan2(sine, cosine))


def rotation_matrix(rows):
    """Turn by a 3x3 matrix R on column vectors: v comes to R v.

    rows: three rows of three floats, orthonormal to 1e-5, right-handed

    Returns the 4x4 tuple for RotateSH
    Raises ValueError where it is no rotation, with how far it is from one
    """
    rows = [[float(each) for each in row] for row in rows]
    if len(rows) != 3 or any(len(row) != 3 for row in rows):
        raise ValueError("a matrix of %s values a row; expected 3 rows of 3"
                         % [len(row) for row in rows])
    off = max(abs(sum(p * q for p, q in zip(rows[i], rows[j])) - (i == j))
              for i in range(3) for j in range(3))
    if not off <= 1e-5:
        raise ValueError("no rotation: the products of its rows are off by "
                         "%.3g" % off)
    if sum(p * q for p, q in zip(_cross(rows[0], rows[1]), rows[2])) < 0:
        raise ValueError("no rotation: a reflection, of determinant -1")
    return _matrix(rows)


def rotation_zyz(alpha, beta, gamma):
    """Turn by Euler angles: about z by gamma, y by beta, z by alpha.

    The axes stay where they are; R = Rz(alpha) Ry(beta) Rz(gamma). The pole
    comes to theta = beta, phi = alpha.

    alpha, beta, gamma: radians, right-handed

    Returns the 4x4 tuple for RotateSH
    Raises ValueError: an angle that is not finite
    """
    return _matrix(_times(_turn(2, alpha), _times(_turn(1, beta),
                                                  _turn(2, gamma))))


def rotation_xyz(a, b, c):
    """Turn about x by a, then y by b, then z by c; the axes stay.

    R = Rz(c) Ry(b) Rx(a).

    a, b, c: radians, right-handed

    Returns the 4x4 tuple for RotateSH
    Raises ValueError: an angle that is not finite
    """
    return _matrix(_times(_turn(2, c), _times(_turn(1, b), _turn(0, a))))


def _finite(angle):
    if angle - angle != 0.0:
        raise ValueError("angle is %r; expected a finite number" % (angle,))


def _direction(place):
    if len(place) != 2:
        raise ValueError("place %r; expected (theta, phi)" % (tuple(place),))
    theta, phi = place
    _finite(theta)
    _finite(phi)
    return (math.sin(theta) * math.cos(phi), math.sin(theta) * math.sin(phi),
            math.cos(theta))


def _cross(a, b):
    return (a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2],
            a[0] * b[1] - a[1] * b[0])


def _turn(axis, angle):
    """The matrix of a turn about a coordinate axis."""
    _finite(angle)
    i, j = (axis + 1) % 3, (axis + 2) % 3
    rows = [[float(p == q) for q in range(3)] for p in range(3)]
    rows[i][i] = rows[j][j] = math.cos(angle)
    rows[j][i] = math.sin(angle)
    rows[i][j] = -math.sin(angle)
    return rows


def _times(a, b):
    return [[sum(a[i][k] * b[k][j] for k in range(3)) for j in range(3)]
            for i in range(3)]


def _matrix(rows):
    """The module's matrix of a rotation on column vectors."""
    return tuple(tuple(_SIGNS[i] * _SIGNS[j] * rows[j][i] for j in range(3))
                 + (0.0,) for i in range(3)) + ((0.0, 0.0, 0.0, 1.0),)
