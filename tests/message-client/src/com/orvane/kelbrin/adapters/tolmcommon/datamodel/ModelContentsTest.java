package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;

import java.util.List;
import org.junit.jupiter.api.Test;

class ModelContentsTest {
    @Test
    void theLastValueOfAMetricCounts() {
        BaseMetric metric = new BaseMetric("load");
        metric.putDoubleValue(1.5);
        metric.putStringValue("high");
        metric.putLongValue(7);

        assertEquals(Metric.Kind.LONG, metric.getKind());
        assertEquals(7, metric.getLongValue());
    }

    @Test
    void aFormerValueLeavesNothingBehind() {
        BaseMetric metric = new BaseMetric("load");
        metric.addInstance(new BaseMetric("0"));
        metric.putDoubleValue(1.5);
        metric.putStringValue("high");

        BaseMetric fresh = new BaseMetric("load");
        fresh.putStringValue("high");
        assertEquals(fresh, metric);
    }

    @Test
    void anInstanceTakesTheValuesPlaceAndFurtherOnesJoinIt() {
        BaseMetric metric = new BaseMetric("disk");
        metric.putLongValue(7);
        metric.addInstance(new BaseMetric("C:"));
        metric.addInstance(new BaseMetric("D:"));

        assertEquals(Metric.Kind.INSTANCES, metric.getKind());
        assertEquals(List.of(new BaseMetric("C:"), new BaseMetric("D:")), metric.getInstances());
    }

    @Test
    void aMetricOfNoValueSaysSo() {
        assertEquals(Metric.Kind.NONE, new BaseMetric("load").getKind());
    }

    @Test
    void askingForAnotherKindOfValueIsAnError() {
        BaseMetric metric = new BaseMetric("load");
        metric.putLongValue(7);

        assertThrows(IllegalStateException.class, metric::getDoubleValue);
        assertThrows(IllegalStateException.class, metric::getStringValue);
        assertThrows(IllegalStateException.class, metric::getInstances);
        assertThrows(IllegalStateException.class, new BaseMetric("none")::getLongValue);
    }

    @Test
    void nullElementsAreIgnored() {
        BaseSample sample = new BaseSample(1);
        sample.putMetric(null);
        sample.putSession(null);
        BaseUserSession session = new BaseUserSession();
        session.putMetric(null);
        session.putRemoteApp(null);
        BaseRemoteApp app = new BaseRemoteApp();
        app.putMetric(null);
        BaseMetric metric = new BaseMetric();
        metric.addInstance(null);
        DesktopInformation information = new DesktopInformation();
        information.addNetworkInterface(null);

        assertEquals(new BaseSample(1), sample);
        assertEquals(new BaseUserSession(), session);
        assertEquals(new BaseRemoteApp(), app);
        assertEquals(new BaseMetric(), metric);
        assertEquals(new DesktopInformation(), information);
    }

    @Test
    void propertiesKeepTheirOrderAndTheLastValueCounts() {
        BaseUserSession session = new BaseUserSession();
        session.putProperty("z", "1");
        session.putProperty("a", "2");
        session.putProperty("z", "3");

        assertEquals("{z=3, a=2}", session.getProperties().toString());
    }

    @Test
    void aNameThatComesTwiceIsKeptTwice() {
        BaseSample sample = new BaseSample(1);
        sample.putMetric(new BaseMetric("same"));
        sample.putMetric(new BaseMetric("same"));

        assertEquals(List.of(new BaseMetric("same"), new BaseMetric("same")), sample.getMetrics());
    }

    @Test
    void whatIsHandedOutCannotBeChanged() {
        BaseUserSession session = ModelObjects.session();
        BaseSample sample = ModelObjects.sample();

        for (List<?> list : List.of(session.getMetrics(), session.getRemoteApps(),
                session.getRemoteApps().get(0).getMetrics(), sample.getMetrics(), sample.getSessions(),
                ModelObjects.information().getNetworkInterfaces(),
                ModelObjects.instancesMetric().getInstances())) {
            assertThrows(UnsupportedOperationException.class, list::clear);
        }
        assertThrows(UnsupportedOperationException.class, session.getProperties()::clear);
        assertThrows(UnsupportedOperationException.class, session.getRemoteApps().get(0).getProperties()::clear);
    }

    @Test
    void aSessionThatNobodyCalledConnectedIsNot() {
        assertFalse(new BaseUserSession(1, "sid", "user", "domain").isConnected());
    }

    @Test
    void textsShowValuesAndNoSecret() {
        assertEquals("DesktopConnection{id=desktop-1, authToken=***, uniqueId=***, version=6, deviceType=DESKTOP}",
                ModelObjects.connection().toString());
        assertEquals("BaseMetric{name=disk, instances=[BaseMetric{name=C:, long=1}, BaseMetric{name=D:, string=gone}]}",
                ModelObjects.instancesMetric().toString());
    }
}
