"""Where the host finds the message server: what an administrator writes, and whether the host found just that."""

import secrets

from build_tree import windows_path

_MAKER = r"HKEY_LOCAL_MACHINE\Software\Orvane, Inc."
_LEGACY_KEY = _MAKER + r"\Orvane Dorsel\Node Manager"
_LEGACY_VALUE = "Kelbrin Server URL"
_DEMO_KEY = r"HKEY_LOCAL_MACHINE\Software\TelvarDemo\Message Server"
_DOCUMENT = f"<agent><serverConfigRegistry>{_DEMO_KEY}</serverConfigRegistry></agent>\n"


class Location:
    """Either a key of the demo's own, which a configuration document names, or the legacy list."""

    def __init__(self, tree, is_legacy, url, certificate):
        self._file = tree.demo / "config.xml"
        self._is_legacy = is_legacy
        self._url = url
        self._certificate_lines = certificate.base64_lines() if certificate else []
        self._token = secrets.token_hex(8)
        self._problem = "the host did not say which server it found"

    def write(self):
        """Writes the document; the result is what has to be in the registry: key -> name -> value (None: no value)."""
        self._file.write_text(_DOCUMENT, encoding="ascii")
        legacy = "|".join([self._url, self._token, self._certificate()]) if self._is_legacy else None
        return {
            _LEGACY_KEY: {_LEGACY_VALUE: legacy},
            # The certificate as several texts, which the host gets in one.
            _DEMO_KEY: {"MessageServerURL": None if self._is_legacy else self._url,
                        "AdapterCertificate": None if self._is_legacy else self._certificate_lines},
        }

    def host_options(self):
        """What the host is started with."""
        return [] if self._is_legacy else ["--config", windows_path(self._file)]

    def check(self, event):
        """Takes in what the host says it found."""
        expected = {
            "url": self._url,
            "secondValue": self._token if self._is_legacy else event["machineUniqueId"],
            "certificate": self._certificate(),
        }
        wrong = [name for name, text in expected.items() if event[name] != text]
        self._problem = f"the host found another server than the one that was named: {', '.join(wrong)}" if wrong else None

    def problem(self):
        """Why the host may not have found the server, if so."""
        return self._problem

    def __str__(self):
        return "the legacy list" if self._is_legacy else "a configuration document and its registry key"

    def _certificate(self):
        return "".join(self._certificate_lines)
