"""A wheel of a package that is built already: its extension makes it one of this system and this version of Python."""
from setuptools import Distribution, setup


class Built(Distribution):
    def has_ext_modules(self):
        return True


setup(distclass=Built)
