package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.server;

import picocli.CommandLine.IVersionProvider;

/** The version that the archive's manifest tells. */
final class ArchiveVersion implements IVersionProvider {
    @Override
    public String[] getVersion() {
        String version = ArchiveVersion.class.getPackage().getImplementationVersion();
        return new String[] {"telvar-message-server " + (version == null ? "(not from an archive)" : version)};
    }
}
