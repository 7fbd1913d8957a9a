package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;
import org.junit.jupiter.params.provider.NullSource;
import org.junit.jupiter.params.provider.ValueSource;

class ProviderUrlTest {
    @ParameterizedTest
    @CsvSource({
        "rmi://host, rmi://host:1099/DesktopMessageServer",
        "RMI://Host/, rmi://Host:1099/DesktopMessageServer",
        "rmi://under_score.example.org:4711, rmi://under_score.example.org:4711/DesktopMessageServer",
        "rmi://10.0.0.1:65535/Other, rmi://10.0.0.1:65535/Other",
        "rmi://[::1]:1/Other, rmi://[::1]:1/Other",
    })
    void whatIsLeftOutIsFilledIn(String given, String meant) {
        assertEquals(meant, ProviderUrl.parse(given).toString());
    }

    @Test
    void bracketsAreNoPartOfTheHost() {
        assertEquals("::1", ProviderUrl.parse("rmi://[::1]").host());
    }

    @ParameterizedTest
    @NullSource
    @ValueSource(strings = {"", "host", "http://host", "rmi:host", "rmi://", "rmi://:1099", "rmi://host:",
        "rmi://host:0", "rmi://host:65536", "rmi://host:port", "rmi://user@host", "rmi://host/name?x=1",
        "rmi://host/name#x",
        "rmi://ho st", " rmi://host", "rmi://[::1"})
    void anythingElseIsRefusedWithAClearText(String url) {
        DesktopMessageClient client = new DesktopMessageClient();

        IllegalArgumentException refusal =
                assertThrows(IllegalArgumentException.class, () -> client.setProviderUrl(url));

        assertTrue(refusal.getMessage().startsWith("the message server's "), refusal.getMessage());
        assertTrue(refusal.getMessage().endsWith(" is " + url), refusal.getMessage());
    }
}
