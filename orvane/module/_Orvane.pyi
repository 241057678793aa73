# The signatures of the Python 2.7 module _Orvane, version 1.1.0.
# Made by scripts/reference.sh from the tables in orvane/module/.

import mmap
from array import array
from typing import Any, Tuple, Union, final

@final
class _Buffer(object):
    """Python 2.7's built-in buffer, which today's checkers do not know."""

    def __len__(self) -> int: ...
    def __str__(self) -> str: ...
    def __getitem__(self, __index: Union[int, slice]) -> str: ...

_ReadBuffer = Union[str, bytearray, _Buffer, array[Any], mmap.mmap]
_Row = Tuple[float, float, float, float]
_Matrix = Tuple[_Row, _Row, _Row, _Row]

@final
class SphericalHarmonic(object):
    """One set of real spherical-harmonic coefficients, in single precision: a scalar function on
    the sphere. SphericalHarmonic() makes an empty set. Use CopySH for a copy: copy.copy,
    copy.deepcopy and pickle with protocol 2 give an empty set, without an error; pickle's older
    protocols raise TypeError. To store a set, write the bytes of GetAsBuffer to a file;
    CreateSHFromBuffer reads them back."""

    def __init__(self) -> None: ...

    numBands: int
    """The number of bands, 0 in a new set. Writing it changes this number alone, not the
    coefficients; use SetNumBands to resize."""

    def SetNumBands(self, __bands: int) -> None:
        """Resizes the set.

        It then has bands * bands coefficients: the first ones are kept, new ones are 0.0.

        bands: number of bands, 0 to 46340

        Errors: ValueError outside the range, MemoryError; the set is then unchanged.
        """
        ...

    def SetCoefficient(self, __index: int, __value: float) -> None:
        """Writes one coefficient.

        index: l * l + l + m for band l, order m; 0 to GetNumCoefficients() - 1
        value: rounded to single precision

        Errors: IndexError outside the set.
        """
        ...

    def GetCoefficient(self, __index: int) -> float:
        """Reads one coefficient.

        index: l * l + l + m for band l, order m; 0 to GetNumCoefficients() - 1

        Returns the coefficient

        Errors: IndexError outside the set.
        """
        ...

    def GetNumCoefficients(self) -> int:
        """Counts the coefficients.

        Returns the number that the set really holds, whatever was written to numBands
        """
        ...

    def Clean(self) -> None:
        """Sets every coefficient to 0.0; their number stays.
        """
        ...

    def GetAsBuffer(self, *__ignored: Any) -> _Buffer:
        """Shows the coefficients in place, as bytes.

        The buffer is live: it shows every later change of a coefficient. It stays safe to read when
        the set is resized or gone, and then shows the last contents it had before. Arguments are
        ignored.

        Returns a read-only buffer of 4-byte floats in the machine's byte order, in index order

        Errors: MemoryError.
        """
        ...

@final
class SHBuilder(object):
    """Owns lookup tables, sample points and an 8-bit image, and performs every operation on sets.
    Methods that change a set return it, but for ExtendSHFromBuffer; methods that create one return
    a new object. A builder cannot be copied: copy.copy, copy.deepcopy and pickle with protocol 2
    give a new builder without tables, samples and image; pickle's older protocols raise
    TypeError."""

    def __init__(self) -> None: ...

    @property
    def angleName(self) -> float:
        """Table steps per radian; 0.0 before GenerateLookUpTables."""
        ...

    @property
    def numSteps(self) -> int:
        """Steps in a full circle, as GenerateLookUpTables was given them; 0 before."""
        ...

    @property
    def maxBands(self) -> int:
        """30 from GenerateLookUpTables on; 0 before."""
        ...

    @property
    def maxCoefficients(self) -> int:
        """900 from GenerateLookUpTables on; 0 before."""
        ...

    def GetValueAt(self, __sh: SphericalHarmonic, __phi: float, __theta: float) -> float:
        """Evaluates a set at one point.

        Angles are cut down to steps of the tables, not interpolated. A set without bands is 0.0
        everywhere and needs no tables.

        sh: the set
        phi: azimuth in radians, any finite number
        theta: polar angle in radians, 0 to pi

        Returns the sum over the bands that numBands tells

        Errors: RuntimeError before GenerateLookUpTables; ValueError where an angle is not finite,
        theta lies beyond the tables, or there are more terms than the set has coefficients or than
        900.
        """
        ...

    def GetValueAtBand(self, __sh: SphericalHarmonic, __phi: float, __theta: float, __band: int) -> float:
        """Evaluates the first bands of a set at one point.

        All bands below band are added up: it is not the value of one band. A negative number counts
        like the positive one.

        sh: the set
        phi: azimuth in radians, any finite number
        theta: polar angle in radians, 0 to pi
        band: number of bands to add up

        Returns the sum of the first band * band terms

        Errors: RuntimeError before GenerateLookUpTables; ValueError where an angle is not finite,
        theta lies beyond the tables, or there are more terms than the set has coefficients or than
        900.
        """
        ...

    def CopySH(self, __sh: SphericalHarmonic) -> SphericalHarmonic:
        """Copies a set.

        sh: the set

        Returns a new set

        Errors: MemoryError.
        """
        ...

    def RotateSH(self, __shIn: SphericalHarmonic, __matrix: _Matrix) -> SphericalHarmonic:
        """Rotates a copy of a set by a matrix.

        The rows of the matrix are x, y, z, which band 1 holds as coefficients 3, 1, 2. A row vector
        is multiplied by the matrix from the right: the matrix ((cos a, -sin a, 0), (sin a, cos a,
        0), (0, 0, 1)) does what RotateZ(shIn, a) does. Whether the matrix is a rotation is not
        checked. Bands that the set lacks, and those beyond 30, come out as 0.0. The fourth row and
        column are ignored.

        shIn: the set to rotate
        matrix: a tuple of 4 tuples of 4 floats (no integers); its upper left 3x3 part is the
        rotation

        Returns a new set, always of 30 bands

        Errors: TypeError for anything but a tuple of tuples of floats; MemoryError.
        """
        ...

    def RotateZ(self, __shIn: SphericalHarmonic, __angle: float) -> SphericalHarmonic:
        """Rotates a copy of a set about the polar axis.

        The result at azimuth phi has the value of shIn at phi + angle: the pattern moves towards
        smaller azimuths. The polar axis stays. Bands beyond 30 come out as 0.0.

        shIn: the set to rotate
        angle: in radians, single precision

        Returns a new set with the bands of shIn

        Errors: MemoryError, and ValueError where numBands was written to be more than 46340 (some
        such numbers pass).
        """
        ...

    def GetGaussDensity(self, __x: float, __mean: float, __stdDev: float) -> float:
        """Evaluates the density of the normal distribution.

        x: where
        mean: the mean
        stdDev: the standard deviation; used as given, negative too

        Returns exp(-(x - mean)^2 / (2 stdDev^2)) / (stdDev sqrt(2 pi)), NaN where stdDev is 0
        """
        ...

    def GenerateLookUpTables(self, __numSteps: int) -> None:
        """Makes the tables that evaluation, projection and rendering read.

        They take 8 KB of memory per step. More steps make finer results; the examples use 1024.

        numSteps: steps in a full circle, 1 to 262144

        Errors: ValueError outside the range, MemoryError; the old tables are then kept.
        """
        ...

    def GenerateSphericalSamples(self, __seed: int, __sqrtNumSamples: int) -> None:
        """Makes the samples over which functions and images are projected.

        They are spread evenly over the sphere; the same seed makes the same samples. The
        docstring's first and third lines describe GenerateLookUpTables.

        seed: of the random generator, 0 to 4294967295
        sqrtNumSamples: samples per axis, up to 16384; none below 1

        Errors: ValueError for too many samples, MemoryError; the old samples are then kept.
        """
        ...

    def GeneratePDFSamples(self, __seed: int, __sqrtNumSamples: int, __numGaussSamples: int) -> None:
        """Makes the samples of CreateImportanceSampledGaussSH.

        Some lie around the mean, the others cover the sphere evenly. The same seed makes the same
        samples.

        seed: of the random generator, any int
        sqrtNumSamples: samples per axis, up to 16384; none below 1
        numGaussSamples: samples around the mean, up to 134217728; at least the mean itself is made

        Errors: ValueError for too many samples, MemoryError; the old samples are then kept.
        """
        ...

    def GenerateImporanceIntegralMipMaps(self) -> None:
        """Integrates the basis functions over zones and wedges of the sphere, at twelve
        resolutions.

        No other method reads the integrals.

        Errors: RuntimeError before GenerateLookUpTables; MemoryError.
        """
        ...

    def SHBasisFunc(self, __index: int, __phi: float, __theta: float) -> float:
        """Evaluates one basis function at one point.

        Angles are cut down to steps of the tables, not interpolated.

        index: l * l + l + m for band l, order m; 0 to 899
        phi: azimuth in radians, any finite number
        theta: polar angle in radians, 0 to pi

        Returns the value of that basis function

        Errors: IndexError for another index; RuntimeError before GenerateLookUpTables; ValueError
        where an angle is not finite or theta lies beyond the tables.
        """
        ...

    def RenderSHToImageBuffer(self, __sh: SphericalHarmonic, __scale: float, __offset: int, __sqrtNumSlices: int, __sliceIndex: int) -> None:
        """Draws a set into the builder's image.

        Returns None, not a buffer: GetImageBuffer gives the pixels. One slice is drawn, so that a
        script can draw a large image piece by piece. A pixel is the value times scale, truncated,
        plus offset, limited to 0 to 255. Row 0 is the pole (theta 0), column 0 is phi 0, and a
        pixel stands for its upper left corner. Rows and columns left over when the image is cut
        into slices are not written.

        sh: the set
        scale: pixel steps per unit of value
        offset: the pixel of value 0
        sqrtNumSlices: N, the root of the number of slices: the image is cut into N * N; at least 1,
        which is the whole image
        sliceIndex: 0 to N * N - 1, row by row

        Errors: RuntimeError without an image or before GenerateLookUpTables; ValueError for another
        slice or a set with fewer coefficients than its bands need.
        """
        ...

    def SetImageBuffer(self, __width: int, __height: int) -> None:
        """Gives the builder a new, black image.

        Buffers that show the old image go on showing it.

        width: in pixels, 0 or more
        height: in pixels, 0 or more

        Errors: ValueError for a negative size or 2^31 pixels and more, MemoryError; the old image
        is then kept.
        """
        ...

    def ClearImageBuffer(self) -> None:
        """Releases the builder's image; it does not blacken it.

        Buffers that show the image go on showing it.
        """
        ...

    def GetImageBuffer(self, *__ignored: Any) -> _Buffer:
        """Shows the builder's image in place, as bytes.

        The buffer is live: it shows what is rendered later. It stays safe to read when the image is
        replaced, cleared or gone with its builder, and then shows its last pixels. Arguments are
        ignored.

        Returns a read-only buffer of width * height bytes, row by row; empty without an image

        Errors: MemoryError.
        """
        ...

    def AddSH(self, __target: SphericalHarmonic, __source: SphericalHarmonic) -> SphericalHarmonic:
        """Adds a set to the target.

        Acts on as many coefficients as the source has. A source that is empty or has more than the
        target changes nothing.

        target: the set that is changed
        source: the other set; may be the target

        Returns the target: the same object that was passed in

        Errors: TypeError where a set is None.
        """
        ...

    def AddScaledSH(self, __target: SphericalHarmonic, __source: SphericalHarmonic, __scale: float) -> SphericalHarmonic:
        """Adds a multiple of a set to the target.

        Acts on as many coefficients as the source has. A source that is empty or has more than the
        target changes nothing.

        target: the set that is changed
        source: the other set; may be the target
        scale: factor of the source

        Returns the target: the same object that was passed in

        Errors: TypeError where a set is None.
        """
        ...

    def SubtractSH(self, __target: SphericalHarmonic, __source: SphericalHarmonic) -> SphericalHarmonic:
        """Subtracts a set from the target.

        Acts on as many coefficients as the source has. A source that is empty or has more than the
        target changes nothing.

        target: the set that is changed
        source: the other set; may be the target

        Returns the target: the same object that was passed in

        Errors: TypeError where a set is None.
        """
        ...

    def SubtractScaledSH(self, __target: SphericalHarmonic, __source: SphericalHarmonic, __scale: float) -> SphericalHarmonic:
        """Subtracts a multiple of a set from the target.

        Acts on as many coefficients as the source has. A source that is empty or has more than the
        target changes nothing.

        target: the set that is changed
        source: the other set; may be the target
        scale: factor of the source

        Returns the target: the same object that was passed in

        Errors: TypeError where a set is None.
        """
        ...

    def ScaleSH(self, __target: SphericalHarmonic, __scale: float) -> SphericalHarmonic:
        """Multiplies every coefficient of a set by a number.

        No other set is involved, whatever the docstring says.

        target: the set that is changed
        scale: the factor

        Returns the target: the same object that was passed in

        Errors: TypeError where a set is None.
        """
        ...

    def OffsetSH(self, __target: SphericalHarmonic, __value: float) -> SphericalHarmonic:
        """Makes the value of a set larger or smaller everywhere.

        Adds value times the band-0 function, 0.2820948, to coefficient 0: the set's value grows by
        value / (4 pi) everywhere, not by value.

        target: the set that is changed
        value: 4 pi times what is added to the value everywhere

        Returns the target: the same object that was passed in

        Errors: TypeError where the set is None; RuntimeError before GenerateLookUpTables unless the
        set is empty.
        """
        ...

    def LerpSH(self, __target: SphericalHarmonic, __from: SphericalHarmonic, __to: SphericalHarmonic, __alpha: float) -> SphericalHarmonic:
        """Blends two sets into the target.

        The target takes over the size of the operands and may be one of them. Operands with
        different numbers of coefficients change nothing.

        target: the set that is changed
        from: the set at alpha 0
        to: the set at alpha 1
        alpha: not limited: beyond 0 to 1 it extrapolates

        Returns the target: the same object that was passed in

        Errors: TypeError where a set is None; MemoryError, and ValueError where numBands of the
        first operand was written to be more than 46340 (some such numbers pass).
        """
        ...

    def CopyScaleAndSubtractSH(self, __target: SphericalHarmonic, __toCopy: SphericalHarmonic, __scale: float, __toSubtract: SphericalHarmonic) -> SphericalHarmonic:
        """Sets the target to one set times a number, minus another set.

        The target takes over the size of the operands and may be one of them. Operands with
        different numbers of coefficients change nothing.

        target: the set that is changed
        toCopy: the set to scale
        scale: its factor
        toSubtract: the set that is taken off

        Returns the target: the same object that was passed in

        Errors: TypeError where a set is None; MemoryError, and ValueError where numBands of the
        first operand was written to be more than 46340 (some such numbers pass).
        """
        ...

    def CreateLatitudeSH(self, __numBands: int) -> SphericalHarmonic:
        """Makes a set of sin theta: a belt around the equator.

        Projects the function over the samples of GenerateSphericalSamples; without any, every
        coefficient is NaN.

        numBands: number of bands, 0 to 30

        Returns a new set: sin theta, 1 on the equator and 0 at the poles

        Errors: RuntimeError where there are samples but no tables; ValueError for another number of
        bands; MemoryError.
        """
        ...

    def CreateLongtitudeSH(self, __numBands: int) -> SphericalHarmonic:
        """Makes a set of sin phi, faded out towards the poles.

        Projects the function over the samples of GenerateSphericalSamples; without any, every
        coefficient is NaN.

        numBands: number of bands, 0 to 30

        Returns a new set: sin phi, faded to 0 at the poles

        Errors: RuntimeError where there are samples but no tables; ValueError for another number of
        bands; MemoryError.
        """
        ...

    def CreateConstantSH(self, __value: float, __numBands: int) -> SphericalHarmonic:
        """Makes a set that has the same value everywhere.

        Coefficient 0 is value times the band-0 function, 0.2820948; the others are 0.0. The
        function has the value value / (4 pi) everywhere.

        value: 4 pi times the value of the function
        numBands: number of bands, 0 to 46340

        Returns a new set

        Errors: RuntimeError before GenerateLookUpTables unless numBands is 0; ValueError for
        another number of bands; MemoryError.
        """
        ...

    def CreateGaussSH(self, __numBands: int, __stdDev: float, __latitude: float, __longitude: float) -> SphericalHarmonic:
        """Makes a set of a Gaussian around any point, by projection.

        The mean is at latitude and longitude, not at the pole as the docstring has it. Projects the
        function over the samples of GenerateSphericalSamples; without any, every coefficient is
        NaN.

        numBands: number of bands, 0 to 30
        stdDev: standard deviation in radians
        latitude: polar angle of the mean in radians, 0 to pi from the pole
        longitude: azimuth of the mean in radians

        Returns a new set: 1 at the mean, 0 beyond five standard deviations

        Errors: RuntimeError where there are samples but no tables; ValueError for another number of
        bands; MemoryError.
        """
        ...

    def CreateImportanceSampledGaussSH(self, __latitude: float, __longitude: float, __stdDev: float) -> SphericalHarmonic:
        """Makes a set of a Gaussian around any point, by importance sampling.

        Uses the samples of GeneratePDFSamples; without any, every coefficient is NaN. The blob is
        narrower than that of CreateGaussSH, and lower: divide it by its value at the mean, with
        ScaleSH, to make it 1 there.

        latitude: polar angle of the mean in radians, 0 to pi from the pole
        longitude: azimuth of the mean in radians
        stdDev: in radians; the samples spread with about 0.659 times this standard deviation

        Returns a new set, always of 30 bands

        Errors: RuntimeError where there are samples but no tables; ValueError where a sample is not
        finite; MemoryError.
        """
        ...

    def CreateSHFromBuffer(self, __buffer: _ReadBuffer, __numBands: int) -> SphericalHarmonic:
        """Makes a set of stored coefficients.

        Values are copied bit for bit. Strings, arrays, byte arrays, buffers and memory maps have a
        read buffer; memoryview has none.

        buffer: numBands * numBands 4-byte floats in the machine's byte order
        numBands: number of bands, -23170 to 23170; stored as given

        Returns a new set

        Errors: TypeError where there is no read buffer or its length does not fit; ValueError for
        another number of bands; MemoryError.
        """
        ...

    def ExtendSHFromBuffer(self, __sh: SphericalHarmonic, __buffer: _ReadBuffer, __oldBand: int, __newBand: int) -> None:
        """Resizes a set and fills its upper bands with stored coefficients.

        Coefficients below oldBand * oldBand are kept, or 0.0 where the set had fewer; those from
        newBand * newBand on are dropped.

        sh: the set that is changed
        buffer: the coefficients of bands oldBand to newBand - 1, 4-byte floats
        oldBand: first band of the buffer; the set's own number is not looked at
        newBand: number of bands afterwards, -46340 to 46340

        Errors: TypeError where there is no read buffer or its length does not fit; ValueError for
        bands whose coefficients take 2 GB and more; MemoryError. The set is then unchanged.
        """
        ...

    def LatitudeProjectionFunc(self, __phi: float, __theta: float) -> float:
        """Evaluates the function that CreateLatitudeSH projects.

        Nothing is projected.

        phi: not used
        theta: polar angle in radians, any finite number

        Returns sin theta, from the tables

        Errors: RuntimeError before GenerateLookUpTables; ValueError where an angle that is folded
        is not finite.
        """
        ...

    def LongtitudeProjectionFunc(self, __phi: float, __theta: float) -> float:
        """Evaluates the function that CreateLongtitudeSH projects.

        Nothing is projected.

        phi: azimuth in radians, any finite number
        theta: polar angle in radians

        Returns sin phi, from the tables, times 1 - ((theta - pi/2) / (pi/2))^4

        Errors: RuntimeError before GenerateLookUpTables; ValueError where an angle that is folded
        is not finite.
        """
        ...

    def GaussProjectionFunc(self, __longitude: float, __latitude: float, __stdDev: float) -> float:
        """Evaluates the function that CreateGaussSH projects, with its mean at the pole.

        Nothing is projected. The longitude changes the result by no more than rounding.

        longitude: azimuth in radians
        latitude: polar angle in radians
        stdDev: standard deviation in radians

        Returns the Gaussian around the pole: 1 there, 0 beyond five standard deviations, and so
        everywhere where stdDev is negative; NaN where an angle is not finite, stdDev is NaN, or at
        the pole where it is 0
        """
        ...

    def SetRandomSeed(self, __seed: int) -> None:
        """Seeds the random generator.

        The generator belongs to the thread, not to the builder. GenerateSphericalSamples and
        GeneratePDFSamples seed it themselves.

        seed: any int
        """
        ...

    def CreateSHFromImageBuffer(self, __width: int, __height: int, __band: int, __buffer: _ReadBuffer) -> SphericalHarmonic:
        """Makes a set of an image.

        Row 0 is the pole (theta 0), column 0 is phi 0. Projects the pixels over the samples of
        GenerateSphericalSamples; without any, every coefficient is NaN. The builder's own image is
        not involved.

        width: in pixels
        height: in pixels
        band: number of bands, -30 to 30; stored as given
        buffer: width * height bytes, row by row

        Returns a new set whose values are pixels, 0 to 255

        Errors: TypeError where there is no read buffer or its length does not fit; ValueError for a
        negative size, an image without pixels or, with samples, more than 900 coefficients;
        RuntimeError where there are samples but no tables; MemoryError.
        """
        ...
